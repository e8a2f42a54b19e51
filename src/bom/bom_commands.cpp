#include "bom/bom_commands.h"

#include "bom/bom_lists.h"
#include "dispatch/companion_sender.h"
#include "system/user_messages.h"
#include "tcl/script_host.h"
#include "text/json.h"
#include "text/text_converter.h"

namespace vernoxa::bom {
namespace {

struct BomMessage {
  const char* command;
  const char* member;
  std::u8string_view shortLineText;  // the question marks are how the text has always been shown
};

constexpr BomMessage addMessage{"AddToBom", "Stick", u8"??BOM??"};
constexpr BomMessage removeMessage{"RemoveFromBom", "NotStick", u8"?BOM?????"};

Json partsMessage(const BomMessage& kind, const TclList& parts, const TextConverter& converter,
                  UserMessages& messages) {
  Json message = Json::object();
  const JsonView data = message.add("Data", Json::object());
  message.add("Command", kind.command);
  const JsonView array = message.addTo(data, kind.member, Json::array());
  for (int index = 0; index < parts.size(); ++index) {
    std::vector<std::string> fields = bomFields(converter.messageText(parts.text(index)));
    if (fields.empty()) {
      messages.show(kind.shortLineText, MessageIcon::none);
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

CommandResult sendParts(const BomMessage& kind, CommandCall& call, const TextConverter& converter,
                        UserMessages& messages, const CompanionSender& sender) {
  if (call.arguments.count() < 2) {
    return {};
  }
  const Json message = partsMessage(kind, call.arguments.list(1), converter, messages);
  return {sender.packetText(message.printUnformatted())};
}

}  // namespace

CommandResult sendAddToBom(CommandCall& call, const TextConverter& converter, UserMessages& messages,
                           const CompanionSender& sender) {
  return sendParts(addMessage, call, converter, messages, sender);
}

CommandResult sendRemoveFromBom(CommandCall& call, const TextConverter& converter, UserMessages& messages,
                                const CompanionSender& sender) {
  return sendParts(removeMessage, call, converter, messages, sender);
}

CommandResult tryUpdateBom(CommandCall& call, const CompanionSender& sender) {
  Json message = Json::object();
  message.add("Command", "TryUpdateBom");
  sender.send(call.host, message.printUnformatted());
  return {};
}

CommandResult selectAddOrRemoveFromBom(CommandCall&) {
  return {"1"};
}

}  // namespace vernoxa::bom
