// The common envelope of all messages: an object with "Command", "Data", "Result" and "ErrInfo".
//
// Messages are byte strings in the code page. Keys are case-sensitive.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "text/json.h"
#include "wire/failure.h"

namespace vernoxa::inline system {
class LogWriter;
class StandardOutput;
}  // namespace vernoxa::inline system

namespace vernoxa::inline wire {

inline constexpr std::string_view replySuffix = "_EndResult";

// Printed on the standard output when a member is missing.
inline constexpr const char* missingValue = "not value\n";

// The failure for text that is not valid JSON is "Error before: [rest]" for the standard output; the failure for text
// beyond the limits (text/outside_json.h) is a line for the log.
Result<Json> parseMessage(const std::string& message);

struct Reply {
  Json data = Json::object();
  std::string result = "0";
  std::optional<std::string> errInfo;  // beside "Result"
};

// Members "Data", "Command", "Result" and, if the reply has one, "ErrInfo"; unformatted.
std::string replyText(const std::string& command, Reply reply);

// The reply for a command that could not be carried out; members "ErrInfo", "Result", "Data", "Command" in that
// order, formatted.
std::string errorReply(std::string_view errorText, std::string_view command);

// Reports a failure that belongs into the log or on the standard output; ignores all others.
void say(const Failure& failure, LogWriter& log, StandardOutput& output);

}  // namespace vernoxa::inline wire
