#include "wire/envelope.h"

#include "text/outside_json.h"

namespace vernoxa {

Result<Json> parseMessage(const std::string& message) {
  const std::string_view refusal = outsideJsonRefusal(message);
  if (!refusal.empty()) {
    return Failure{Failure::Where::log, std::string("JSON refused: ").append(refusal), {}};
  }
  Json::Parsed parsed = Json::parse(message);
  if (!parsed.document) {
    return Failure{Failure::Where::output, "Error before: [" + parsed.errorRest + "]\n", {}};
  }
  return std::move(parsed.document);
}

std::string errorReply(std::string_view errorText, std::string_view command) {
  Json reply = Json::object();
  reply.add("ErrInfo", errorText);
  reply.add("Result", "1");
  reply.add("Data", Json::object());
  reply.add("Command", std::string(command).append(replySuffix));
  return reply.printFormatted();
}

}  // namespace vernoxa
