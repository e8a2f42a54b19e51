#include "dispatch/companion_sender.h"

#include "system/log.h"
#include "system/user_messages.h"
#include "wire/packet_text.h"

namespace vernoxa::inline dispatch {
namespace {

// `nullopt` after a message box.
std::optional<std::string> encoded(const Logs& logs, UserMessages& messages, std::string_view message) {
  LogWriter log = logs.openTraffic();
  Result<std::string> packetText = encodePacket(message, log);
  if (const auto* failure = std::get_if<Failure>(&packetText)) {
    messages.show(failure->shown, MessageIcon::none);
    return std::nullopt;
  }
  return std::get<std::string>(std::move(packetText));
}

}  // namespace

std::string CompanionSender::packetText(std::string_view message) const {
  return encoded(logs_, messages_, message).value_or(std::string());
}

Evaluation CompanionSender::send(ScriptHost& host, std::string_view message) const {
  const auto text = encoded(logs_, messages_, message);
  return text ? host.evaluate(Script("sendPacketGlobalHandle ").quoted(*text)) : Evaluation();
}

void CompanionSender::sendLogged(ScriptHost& host, std::string_view message) const {
  const std::string answer = send(host, message).text;
  logs_.openTraffic().writeLine("sendPacketGlobalHandle \"" + answer + "\"");
}

}  // namespace vernoxa::inline dispatch
