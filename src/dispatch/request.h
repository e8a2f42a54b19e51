// A message that asks for something.
#pragma once

#include <string>
#include <string_view>

#include "text/json.h"
#include "wire/failure.h"

namespace vernoxa::inline dispatch {

// Texts are in the code page; views are valid as long as this object.
struct Request {
  Json document;
  std::string command;
  JsonView message;
  JsonView data;  // empty if the message has no "Data"

  // The text or whole number of a member of "Data", in the code page; empty or 0 when it is missing.
  std::string text(std::string_view member) const;
  int number(std::string_view member) const { return data.member(member).wholeNumber().value_or(0); }
};

// The failure for text that is not a message, or has no "Command", is for the log or the standard output.
Result<Request> requestIn(const std::string& message);

}  // namespace vernoxa::inline dispatch
