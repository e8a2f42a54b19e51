#include "link/companion_sender.h"

#include "core/script_host.h"
#include "link/packet_text.h"

namespace vernoxa {

std::string sendToCompanion(ScriptHost& host, const Services& services, std::string_view message) {
  std::string packetText;
  if (encodePacket(services, message, packetText) != 0) {
    return {};
  }
  return host.evaluate(sendScript(packetText)).text;
}

}  // namespace vernoxa
