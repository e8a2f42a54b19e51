#include "modules/companion_query.h"

#include <chrono>

#include "dispatch/services.h"
#include "dispatch/state.h"
#include "link/socket_client.h"
#include "system/log.h"
#include "text/outside_json.h"

namespace vernoxa {
namespace {

constexpr std::chrono::seconds replyLimit{30};

// The reply's text; nothing when the companion cannot be reached or does not answer in time.
std::optional<std::string> exchange(const Services& services, std::string_view request) {
  LogWriter log = services.logs.openTraffic();
  SocketClient client(services.world, services.logs);
  if (!services.state.link.companionMayBeAsked() || client.connect(localAddress, companionPort) != 0) {
    log.writeLine("can't Init");
    return std::nullopt;
  }
  client.sendPacket(request);
  std::string reply;
  const int status = client.receivePacket(reply, replyLimit);
  log.writeFormatted("ret:%d", status);
  return status == 0 ? std::optional(reply) : std::nullopt;
}

std::optional<std::string> textOrNumber(JsonView value) {
  if (const auto text = value.text()) {
    return std::string(*text);
  }
  const auto number = value.wholeNumber();
  return number ? std::optional(std::to_string(*number)) : std::nullopt;
}

}  // namespace

std::optional<QueryReply> askCompanion(const Services& services, std::string_view request, std::string_view member) {
  std::optional<std::string> text = exchange(services, request);
  if (!text) {
    return std::nullopt;
  }
  QueryReply reply;
  reply.text = std::move(*text);
  reply.message = parseOutsideJson(reply.text, services.logs);
  const auto result = reply.message.member("Result").wholeNumber();
  const JsonView data = reply.message.member("Data");
  const auto value = textOrNumber(data.member(member));
  if (!result || !data.isObject() || !value) {
    services.logs.openTraffic().writeLine(!result ? "Result" : !data.isObject() ? "Data" : member);
    return std::nullopt;
  }
  reply.data = data;
  reply.value = *value;
  reply.errorText = *result != 0 ? std::to_string(*result) : std::string();
  return reply;
}

}  // namespace vernoxa
