// Text in UTF-16, as Windows itself holds it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vernoxa::inline system {

// `codePage` as Windows numbers it: CP_ACP for the host's, or CP_UTF8. Bytes that are not valid in it become
// replacement characters.
std::wstring toWide(std::string_view text, unsigned codePage);

// A character that the code page lacks becomes one that looks like it, or the system's default character.
std::string fromWide(std::wstring_view wide, unsigned codePage);

// `nullopt` if the code page lacks a character.
std::optional<std::string> nameFromWide(std::wstring_view wide, unsigned codePage);

}  // namespace vernoxa::inline system
