// Sends a message to the companion through the host's own connection.
#pragma once

#include <string>
#include <string_view>

namespace vernoxa {

class ScriptHost;
struct Services;

// Has the host's `sendPacketGlobalHandle` send a message (code page bytes) and gives the answer of that procedure, or
// the error text of its failure; empty when the message could not be encoded, which a message box has told then.
std::string sendToCompanion(ScriptHost& host, const Services& services, std::string_view message);

}  // namespace vernoxa
