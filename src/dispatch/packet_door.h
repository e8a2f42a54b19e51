// The two doors through which packets reach the plug-in on the host's thread.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "dispatch/dispatcher.h"
#include "system/system.h"
#include "tcl/command.h"

namespace vernoxa {

// Packets are carried out one at a time; a host script that runs the event loop inside a handler may enter again.
struct PacketLock {
  std::unique_ptr<Lock> lock;
};

struct PacketDoor {
  std::span<const HandlerRow> rows;
  Answers answers;
  const char* failureText;  // "ErrInfo" when a command failed without a reply of its own
};

// Packet text in, packet text of the reply out; empty when there is nothing to answer. A text that is no packet text
// comes back encoded once more.
std::string runPacket(const PacketDoor& door, std::string_view packetText, ScriptHost& host, Services& services,
                      PacketLock& lock);

CommandResult packetParser(CommandCall& call, Services& services, PacketLock& lock);
CommandResult packetParserForPthread(CommandCall& call, Services& services, PacketLock& lock);

}  // namespace vernoxa
