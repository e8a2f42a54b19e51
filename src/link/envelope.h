// The common envelope of all messages: an object with "Command", "Data", "Result" and "ErrInfo".
//
// Messages are byte strings in the code page. Keys are case-sensitive.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/json.h"

namespace vernoxa {

class StandardOutput;

inline constexpr std::string_view replySuffix = "_EndResult";

// Parses a message. When it is no JSON prints "Error before: [rest]" and a line end, and is empty.
Json parseMessage(const std::string& message, StandardOutput& output);

// The text of "Command". When it is missing or no string prints "not value" and a line end, and is nothing.
std::optional<std::string> commandOf(JsonView message, StandardOutput& output);

// Prints "not value" and a line end: how a missing member is told on standard output.
void printMissingValue(StandardOutput& output);

// The reply for a command that could not be carried out; members "ErrInfo", "Result", "Data", "Command" in that
// order, formatted. Nothing when the request names no command.
std::optional<std::string> errorReply(std::string_view errorText, const std::string& request, StandardOutput& output);

}  // namespace vernoxa
