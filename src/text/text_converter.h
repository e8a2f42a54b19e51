// Converts text between the system's ANSI code page (936, GBK, on the systems that the plug-in was made for) and UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "system/code_page.h"
#include "system/file_path.h"

namespace vernoxa::inline system {
class UserMessages;
}  // namespace vernoxa::inline system

namespace vernoxa::inline text {

// Every result ends at the first NUL byte of the text.
class TextConverter {
 public:
  TextConverter(const CodePage& codePage, UserMessages& messages) : codePage_(codePage), messages_(messages) {}

  // When memory runs out, shows "GBK格式异常" and gives an empty text.
  std::string ansiToUtf8(std::string_view ansi) const;

  // Text that is not valid UTF-8 counts as in the code page already and stays as it is. Tcl's own form of UTF-8 is
  // valid here, and ends at its NUL.
  std::string utf8ToAnsi(std::string_view utf8) const;

  // A name or text from the host for a message (code page): converted if it looks like UTF-8 Chinese.
  std::string messageText(std::string_view hostText) const;

  // A value of a packet for a script (UTF-8): converted unless it is UTF-8 with a three-byte sequence.
  std::string scriptValue(std::string_view packetValue) const;

  // A path from the host, in either encoding, that goes back to it (UTF-8): converted unless it is valid UTF-8.
  std::string hostPath(std::string_view path) const;

  // A path from a packet, or kept from one, in either encoding; told apart as in `scriptValue`.
  FilePath path(std::string_view packetPath) const;

  // A name from the host's Tcl for a path (UTF-8).
  std::string trueName(std::string_view hostName) const;

  // A path for a message; `nullopt` if the code page lacks one of its characters.
  std::optional<std::string> nameInCodePage(const FilePath& path) const;

  // Replaces an ASCII character in text in the code page. The second byte of a double-byte character is left alone,
  // even if it has the same value.
  std::string replaceInCodePage(std::string_view text, char character, std::string_view to) const;

  // Doubles the backslashes of a path in the code page or in UTF-8.
  std::string doubledBackslashes(std::string_view packetPath) const;

 private:
  const CodePage& codePage_;
  UserMessages& messages_;
};

}  // namespace vernoxa::inline text
