#include "dispatch/packet_door.h"

#include "dispatch/services.h"
#include "system/system.h"
#include "system/world.h"
#include "wire/envelope.h"
#include "wire/packet_text.h"

namespace vernoxa {
namespace {

class HeldLock {
 public:
  explicit HeldLock(Lock& lock) : lock_(lock) { lock_.acquire(); }
  ~HeldLock() { lock_.release(); }
  HeldLock(const HeldLock&) = delete;
  HeldLock& operator=(const HeldLock&) = delete;

 private:
  Lock& lock_;
};

std::string replyTo(const PacketDoor& door, std::string_view packetText, ScriptHost& host, Services& services) {
  std::string message;
  StandardOutput& output = services.world.output;
  if (decodePacket(services, packetText, message) != 0) {
    return packetText.empty() ? errorReply("decode error", message, output).value_or("") : std::string(packetText);
  }
  std::string reply;
  if (dispatch(door.rows, door.answers, message, reply, host, services) != handled && reply.empty()) {
    return errorReply(door.failureText, message, output).value_or("");
  }
  return reply;
}

CommandResult runDoor(const PacketDoor& door, CommandCall& call, Services& services, PacketLock& lock) {
  if (call.arguments.count() < 2) {
    return {};
  }
  return {runPacket(door, call.arguments.text(1), call.host, services, lock)};
}

}  // namespace

std::string runPacket(const PacketDoor& door, std::string_view packetText, ScriptHost& host, Services& services,
                      PacketLock& lock) {
  // A copy: a script may change the variable that the caller's text lives in.
  const std::string received(packetText);
  const HeldLock held(*lock.lock);
  std::string encoded;
  encodePacket(services, replyTo(door, received, host, services), encoded);
  return encoded;
}

CommandResult packetParser(CommandCall& call, Services& services, PacketLock& lock) {
  return runDoor({companionHandlers(), Answers::accepted, "command error"}, call, services, lock);
}

CommandResult packetParserForPthread(CommandCall& call, Services& services, PacketLock& lock) {
  return runDoor({threadHandlers(), Answers::unknown, "command1 error"}, call, services, lock);
}

}  // namespace vernoxa
