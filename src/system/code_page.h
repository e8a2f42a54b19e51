// The system's ANSI code page (936, GBK, on the systems that the plug-in was made for), and checks that tell text in
// UTF-8 from text in that code page.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vernoxa::inline system {

// The code page that the process began with, and the operating system's conversions from and to it. Bytes that are not
// valid in the source encoding become replacement characters; no conversion fails. Usable from any thread.
class CodePage {
 public:
  virtual ~CodePage() = default;
  virtual unsigned number() const = 0;  // as Windows numbers it; 65001 is UTF-8
  // Whether a double-byte character begins with this byte. Always false in UTF-8, where no byte of a longer sequence
  // can be taken for another character.
  virtual bool isLeadByte(char byte) const = 0;
  virtual std::string toUtf8(std::string_view ansi) const = 0;
  // A character that the code page lacks becomes one that looks like it, or the system's default character. For text
  // that people read, never for the name of a file.
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
