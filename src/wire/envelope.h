// The common envelope of all messages: an object with "Command", "Data", "Result" and "ErrInfo".
//
// Messages are byte strings in the code page. Keys are case-sensitive.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "text/json.h"

namespace vernoxa {

class StandardOutput;
struct Services;

inline constexpr std::string_view replySuffix = "_EndResult";

// Parses a message. When it is no JSON prints "Error before: [rest]" and a line end, and is empty; when it is beyond
// the bounds of what is parsed it is empty, and the traffic log says why.
Json parseMessage(const std::string& message, const Services& services);

// The text of "Command". When it is missing or no string prints "not value" and a line end, and is nothing.
std::optional<std::string> commandOf(JsonView message, StandardOutput& output);

// Prints "not value" and a line end: how a missing member is told on standard output.
void printMissingValue(StandardOutput& output);

// The reply for a command that could not be carried out; members "ErrInfo", "Result", "Data", "Command" in that
// order, formatted. Nothing when the request names no command, or is beyond the bounds.
std::optional<std::string> errorReply(std::string_view errorText, const std::string& request, StandardOutput& output);

}  // namespace vernoxa
