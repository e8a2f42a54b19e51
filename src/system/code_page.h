// The system's ANSI code page (936, GBK, on the systems that the plug-in was made for), and what tells a text in UTF-8
// from one in it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vernoxa::inline system {

// The code page that the process began with, and its conversions by the operating system. Bytes that are no text of the
// source encoding give replacement characters, never a failure. Usable from any thread.
class CodePage {
 public:
  virtual ~CodePage() = default;
  virtual unsigned number() const = 0;  // as Windows numbers it; 65001 is UTF-8
  // Whether a double-byte character begins so. None does in UTF-8, whose sequences hold no byte of another character.
  virtual bool isLeadByte(char byte) const = 0;
  virtual std::string toUtf8(std::string_view ansi) const = 0;
  // A character that the code page lacks becomes one that looks like it, or the system's default character: for texts
  // that are read, never for one that becomes a name.
  virtual std::string fromUtf8(std::string_view utf8) const = 0;
  // `nullopt` if the code page lacks a character.
  virtual std::optional<std::string> nameFromUtf8(std::string_view utf8) const = 0;
};

bool isAscii(std::string_view text);

// True for an empty text too: the host scripts treat "no name" and "a name with other characters" alike.
bool hasNonAscii(std::string_view text);

// Length of the well-formed UTF-8 sequence that starts at `index`, which lies within the text; 0 when none does (table
// 3-7 of the Unicode standard).
std::size_t utf8SequenceLength(std::string_view text, std::size_t index);

// Well-formed UTF-8 by RFC 3629: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);

// Well-formed UTF-8 that holds at least one three-byte sequence: a text of the code page is practically never both.
bool isUtf8WithThreeByteSequence(std::string_view text);

}  // namespace vernoxa::inline system
