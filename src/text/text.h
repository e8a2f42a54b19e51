// Checks and small operations on text. Texts are byte strings; each function says which encoding it expects.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "system/code_page.h"  // the checks that the logs need too

namespace vernoxa::inline system {
class GuidSource;
}  // namespace vernoxa::inline system

namespace vernoxa::inline text {

// "Looks like UTF-8 Chinese": the first byte in E4..E9 (lead bytes of the common Chinese characters in UTF-8) is
// followed by two continuation bytes and at least one byte more. A text that ends with its only such character does
// not count, so that short code page texts are left alone.
bool looksLikeUtf8Chinese(std::string_view text);

constexpr std::string_view tclNul = "\xC0\x80";  // how Tcl 8.6 holds a NUL character

// Text as Tcl 8.6 holds it, converted to standard UTF-8. The result ends at the first NUL. A character above U+FFFF,
// which Tcl holds as two surrogates of three bytes each, becomes one sequence of four bytes; half such a pair becomes
// U+FFFD, the replacement character. `nullopt` for bytes that are not Tcl's, which are in the code page.
std::optional<std::string> utf8OfTcl(std::string_view tclText);

// The pieces between separators, empty ones included: "a;b;" has three, "" has one.
std::vector<std::string> splitFields(std::string_view text, char separator);

// The same without empty pieces.
std::vector<std::string> splitItems(std::string_view text, char separator);

// Replaces each occurrence, left to right, going on after the inserted text. An empty `from` changes nothing.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

// For text in UTF-8, where no byte of a multi-byte character equals an ASCII character.
std::string doubleBackslashes(std::string_view text);

// The text after the last "."; `nullopt` without one.
std::optional<std::string> extensionOf(std::string_view path);

// A new GUID as 36 characters. The third group is in lower case, all others in upper case: readers compare texts, for
// example 1B4E28BA-2FA1-11d2-883F-0016D3CCA427. Empty when the system gives none.
std::string guidText(GuidSource& source);

}  // namespace vernoxa::inline text
