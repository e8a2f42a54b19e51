// JSON texts that somebody else wrote: messages, modules, the configuration. They may be hostile, and a parsed text
// takes up to fifty times its own size.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/json.h"

namespace vernoxa::inline system {
class Logs;
}  // namespace vernoxa::inline system

namespace vernoxa::inline text {

// Bounds of a text from outside. At them parsing takes less than a gigabyte and one second (`./dev bench` measures it).
constexpr std::size_t longestOutsideJson = std::size_t{32} << 20U;  // bytes
constexpr std::size_t deepestOutsideJson = 1000;  // arrays and objects in each other, cJSON's own limit
// Counted by brackets, commas, and spaces in texts, since the words of a text may become values too (the points of a
// path do). An empty array or object counts twice. The longest sound module has about half of it.
constexpr std::size_t mostOutsideValues = std::size_t{4} << 20U;

// Why a text is not parsed, in words for the log; empty for one within the bounds. Looks at the text as the parser
// does: up to its first NUL byte or the end of its first value, one pass, no memory.
std::string_view outsideJsonRefusal(std::string_view text);

// Whether it may be parsed; if not, the traffic log says why.
bool isWithinBounds(std::string_view text, const Logs& logs);

// The document, empty when the text is beyond the bounds (and the traffic log says so) or no JSON.
Json parseOutsideJson(const std::string& text, const Logs& logs);

}  // namespace vernoxa::inline text
