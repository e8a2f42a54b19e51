#include "dispatch/request.h"

#include "wire/envelope.h"

namespace vernoxa::inline dispatch {

std::string Request::text(std::string_view member) const {
  const JsonView value = data.member(member);
  if (const auto text = value.text()) {
    return std::string(*text);
  }
  const auto number = value.wholeNumber();
  return number ? std::to_string(*number) : std::string();
}

Result<Request> requestIn(const std::string& message) {
  Result<Json> parsed = parseMessage(message);
  if (auto* failure = std::get_if<Failure>(&parsed)) {
    return std::move(*failure);
  }
  Request request;
  request.document = std::get<Json>(std::move(parsed));
  request.message = request.document.view();
  request.data = request.message.member("Data");
  const auto command = request.message.member("Command").text();
  if (!command) {
    return Failure{Failure::Where::output, missingValue, {}};
  }
  request.command = *command;
  return request;
}

}  // namespace vernoxa::inline dispatch
