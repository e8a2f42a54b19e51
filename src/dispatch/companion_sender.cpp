#include "dispatch/companion_sender.h"

#include "wire/packet_text.h"

namespace vernoxa {

Evaluation sendToCompanion(ScriptHost& host, const Services& services, std::string_view message) {
  std::string packetText;
  if (encodePacket(services, message, packetText) != 0) {
    return {};
  }
  return host.evaluate(Script("sendPacketGlobalHandle ").quoted(packetText));
}

}  // namespace vernoxa
