#include "wire/envelope.h"

#include "system/log.h"
#include "system/system.h"
#include "text/outside_json.h"

namespace vernoxa::inline wire {

Result<Json> parseMessage(const std::string& message) {
  const std::string_view refusal = outsideJsonRefusal(message, mostMessageValues);
  if (!refusal.empty()) {
    return Failure{Failure::Where::log, std::string("JSON refused: ").append(refusal), {}};
  }
  Json::Parsed parsed = Json::parse(message);
  if (!parsed.document) {
    return Failure{Failure::Where::output, "Error before: [" + parsed.errorRest + "]\n", {}};
  }
  return std::move(parsed.document);
}

std::string replyText(const std::string& command, Reply reply) {
  Json message = Json::object();
  message.add("Data", std::move(reply.data));
  message.add("Command", command + std::string(replySuffix));
  message.add("Result", reply.result);
  if (reply.errInfo) {
    message.add("ErrInfo", *reply.errInfo);
  }
  return message.printUnformatted();
}

std::string errorReply(std::string_view errorText, std::string_view command) {
  Json reply = Json::object();
  reply.add("ErrInfo", errorText);
  reply.add("Result", "1");
  reply.add("Data", Json::object());
  reply.add("Command", std::string(command).append(replySuffix));
  return reply.printFormatted();
}

void say(const Failure& failure, LogWriter& log, StandardOutput& output) {
  if (failure.where == Failure::Where::log) {
    log.writeLine(failure.what);
  } else if (failure.where == Failure::Where::output) {
    output.print(failure.what);
  }
}

}  // namespace vernoxa::inline wire
