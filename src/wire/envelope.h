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

// How a member that is missing is said on standard output.
inline constexpr const char* missingValue = "not value\n";

// The failure of a text that is not valid JSON prints "Error before: [rest]"; that of one beyond the bounds of what is
// parsed is a line of the log.
Result<Json> parseMessage(const std::string& message);

struct Reply {
  Json data = Json::object();
  std::string result = "0";
  std::optional<std::string> errInfo;  // beside "Result"
};

// Members "Data", "Command", "Result" and, when the reply has one, "ErrInfo"; unformatted.
std::string replyText(const std::string& command, Reply reply);

// The reply for a command that could not be carried out; members "ErrInfo", "Result", "Data", "Command" in that
// order, formatted.
std::string errorReply(std::string_view errorText, std::string_view command);

// Says a failure that belongs into the log or on the standard output; all others are not for the caller to say.
void say(const Failure& failure, LogWriter& log, StandardOutput& output);

}  // namespace vernoxa::inline wire
