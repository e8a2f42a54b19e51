#include "modules/companion_query.h"

#include <chrono>

#include "link/companion_link.h"
#include "link/socket_client.h"
#include "system/log.h"
#include "text/outside_json.h"

namespace vernoxa::modules {
namespace {

constexpr std::chrono::seconds replyLimit{30};

std::optional<std::string> textOrNumber(JsonView value) {
  if (const auto text = value.text()) {
    return std::string(*text);
  }
  const auto number = value.wholeNumber();
  return number ? std::optional(std::to_string(*number)) : std::nullopt;
}

}  // namespace

// The text of the reply; `nullopt` if the companion cannot be reached or does not answer in time.
std::optional<std::string> CompanionQuery::exchange(std::string_view request) const {
  LogWriter log = logs_.openTraffic();
  link::SocketClient client(sockets_, clock_, output_, logs_);
  if (!link_.companionMayBeAsked() || client.connect(link::localAddress, link::companionPort) != 0) {
    log.writeLine("can't Init");
    return std::nullopt;
  }
  client.sendPacket(request);
  std::string reply;
  const int status = client.receivePacket(reply, replyLimit);
  log.writeFormatted("ret:%d", status);
  return status == 0 ? std::optional(reply) : std::nullopt;
}

std::optional<QueryReply> CompanionQuery::ask(std::string_view request, std::string_view member) const {
  std::optional<std::string> text = exchange(request);
  if (!text) {
    return std::nullopt;
  }
  QueryReply reply;
  reply.text = std::move(*text);
  reply.message = parseOutsideJson(reply.text, logs_);
  const auto result = reply.message.member("Result").wholeNumber();
  const JsonView data = reply.message.member("Data");
  const auto value = textOrNumber(data.member(member));
  if (!result || !data.isObject() || !value) {
    logs_.openTraffic().writeLine(!result ? "Result" : !data.isObject() ? "Data" : member);
    return std::nullopt;
  }
  reply.data = data;
  reply.value = *value;
  reply.errorText = *result != 0 ? std::to_string(*result) : std::string();
  return reply;
}

}  // namespace vernoxa::modules
