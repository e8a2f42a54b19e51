// JSON that somebody else wrote: messages, modules, the configuration. It may be hostile, and once parsed it takes up
// to fifty times the memory of its text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/json.h"

namespace vernoxa::inline system {
class Logs;
}  // namespace vernoxa::inline system

namespace vernoxa::inline text {

// Limits of a text from outside. A text at these limits is parsed within one second and a gigabyte (`./dev bench`).
constexpr std::size_t longestOutsideJson = std::size_t{32} << 20U;  // bytes
constexpr std::size_t deepestOutsideJson = 1000;  // arrays and objects in each other, cJSON's own limit
// Counted by brackets, commas, and spaces in strings, since the words of a string may become values too (the points of
// a path do). An empty array or object counts twice. The largest valid module has about half of it.
constexpr std::size_t mostOutsideValues = std::size_t{4} << 20U;
// Of a message: its values may all become words of one script, which takes Tcl 250 bytes for each.
constexpr std::size_t mostMessageValues = std::size_t{1} << 20U;

// Why a text is not parsed, in words for the log; empty if it is within the limits. Looks at the text as the parser
// does: up to its first NUL byte or the end of its first value. One pass, no memory.
std::string_view outsideJsonRefusal(std::string_view text, std::size_t mostValues = mostOutsideValues);

// Whether a text may be parsed; if not, the traffic log says why.
bool isWithinBounds(std::string_view text, const Logs& logs);

// The document; empty if the text is beyond the limits (the traffic log says so) or not valid JSON.
Json parseOutsideJson(const std::string& text, const Logs& logs);

}  // namespace vernoxa::inline text
