#include "bom/bom_commands.h"

#include "bom/bom_line.h"
#include "dispatch/companion_sender.h"
#include "dispatch/services.h"
#include "system/user_messages.h"
#include "system/world.h"
#include "tcl/script_host.h"
#include "text/code_page.h"
#include "wire/packet_text.h"

namespace vernoxa {
namespace {

struct BomMessage {
  const char* command;
  const char* member;
  std::u8string_view shortLineText;  // the question marks are how the text has always been shown
};

constexpr BomMessage addMessage{"AddToBom", "Stick", u8"??BOM??"};
constexpr BomMessage removeMessage{"RemoveFromBom", "NotStick", u8"?BOM?????"};

Json partsMessage(const BomMessage& kind, const TclList& parts, const Services& services) {
  Json message = Json::object();
  const JsonView data = message.add("Data", Json::object());
  message.add("Command", kind.command);
  const JsonView array = message.addTo(data, kind.member, Json::array());
  for (int index = 0; index < parts.size(); ++index) {
    std::vector<std::string> fields = bomFields(services.text.messageText(parts.text(index)));
    if (fields.empty()) {
      services.world.messages.show(kind.shortLineText, MessageIcon::none);
      continue;
    }
    if (fields.front() == "x") {  // the host script's mark for a part without a number
      fields.front().clear();
    }
    message.appendTo(array, bomLine(fields));
  }
  message.add("Result", "0");
  return message;
}

CommandResult sendParts(const BomMessage& kind, CommandCall& call, Services& services) {
  if (call.arguments.count() < 2) {
    return {};
  }
  std::string packetText;
  const Json message = partsMessage(kind, call.arguments.list(1), services);
  encodePacket(services, message.printUnformatted(), packetText);
  return {packetText};
}

}  // namespace

CommandResult sendAddToBom(CommandCall& call, Services& services) {
  return sendParts(addMessage, call, services);
}

CommandResult sendRemoveFromBom(CommandCall& call, Services& services) {
  return sendParts(removeMessage, call, services);
}

CommandResult tryUpdateBom(CommandCall& call, Services& services) {
  Json message = Json::object();
  message.add("Command", "TryUpdateBom");
  sendToCompanion(call.host, services, message.printUnformatted());
  return {};
}

CommandResult selectAddOrRemoveFromBom(CommandCall&, Services&) {
  return {"1"};
}

}  // namespace vernoxa
