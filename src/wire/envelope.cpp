#include "wire/envelope.h"

#include "dispatch/services.h"
#include "system/system.h"
#include "system/world.h"
#include "text/outside_json.h"

namespace vernoxa {

namespace {

Json parsedOrTold(const std::string& message, StandardOutput& output) {
  Json::Parsed parsed = Json::parse(message);
  if (!parsed.document) {
    output.print("Error before: [" + parsed.errorRest + "]\n");
  }
  return std::move(parsed.document);
}

}  // namespace

Json parseMessage(const std::string& message, const Services& services) {
  return isWithinBounds(message, services.logs) ? parsedOrTold(message, services.world.output) : Json();
}

std::optional<std::string> commandOf(JsonView message, StandardOutput& output) {
  const auto command = message.member("Command").text();
  if (!command) {
    printMissingValue(output);
    return std::nullopt;
  }
  return std::string(*command);
}

void printMissingValue(StandardOutput& output) {
  output.print("not value\n");
}

std::optional<std::string> errorReply(std::string_view errorText, const std::string& request, StandardOutput& output) {
  const Json message = outsideJsonRefusal(request).empty() ? parsedOrTold(request, output) : Json();
  if (!message) {
    return std::nullopt;
  }
  const auto command = commandOf(message.view(), output);
  if (!command) {
    return std::nullopt;
  }
  Json reply = Json::object();
  reply.add("ErrInfo", errorText);
  reply.add("Result", "1");
  reply.add("Data", Json::object());
  reply.add("Command", std::string(*command).append(replySuffix));
  return reply.printFormatted();
}

}  // namespace vernoxa
