// The result of a request.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "text/json.h"
#include "wire/envelope.h"
#include "wire/failure.h"

namespace vernoxa::inline dispatch {

// A reply, a failure, or neither: then nothing is answered.
struct Outcome {
  std::optional<Reply> reply;
  std::optional<Failure> failure;

  static Outcome success(Json data = Json::object(), std::optional<std::string> errInfo = std::nullopt) {
    return {Reply{std::move(data), "0", std::move(errInfo)}, std::nullopt};
  }
  // Answered by "Result" "1" and the text in "ErrInfo" beside it.
  static Outcome failed(std::string errInfo) {
    return {std::nullopt, Failure{Failure::Where::reply, std::move(errInfo), {}}};
  }
  // Answered with the endpoint's failure text, like an unknown request.
  static Outcome refused(Failure failure = {}) { return {std::nullopt, std::move(failure)}; }
  static Outcome silent() { return {}; }

  // Never false: it is asked of placing alone, whose replies tell of success.
  bool succeeded() const { return reply && reply->result == "0"; }
};

}  // namespace vernoxa::inline dispatch
