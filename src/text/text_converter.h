// Texts between the system's ANSI code page (936, GBK, on the systems that the plug-in was made for) and UTF-8.
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

// The conversions as the plug-in uses them. Results end at the first NUL byte of the text.
class TextConverter {
 public:
  TextConverter(const CodePage& codePage, UserMessages& messages) : codePage_(codePage), messages_(messages) {}

  // A failure (memory) shows "GBK格式异常" and gives the empty text.
  std::string ansiToUtf8(std::string_view ansi) const;

  // A text that is not valid UTF-8 is in the code page already and stays as it is. A text of Tcl's is one, and ends at
  // its NUL.
  std::string utf8ToAnsi(std::string_view utf8) const;

  // A name or text from the host on its way into a message (code page): converted when it looks like UTF-8 Chinese.
  std::string messageText(std::string_view hostText) const;

  // A value of a packet on its way into a script (UTF-8): converted unless it is UTF-8 with a three-byte sequence.
  std::string scriptValue(std::string_view packetValue) const;

  // A path that came from the host, goes back to it and may have been in either encoding: any valid UTF-8 stays.
  std::string hostPath(std::string_view path) const;

  // A path that a packet brought or the state holds for one, in the code page or in UTF-8 as `scriptValue` tells.
  FilePath path(std::string_view packetPath) const;

  // A name from the host's Tcl on its way into a path (UTF-8).
  std::string trueName(std::string_view hostName) const;

  // A path on its way into a message; `nullopt` if the code page lacks a character of it.
  std::optional<std::string> nameInCodePage(const FilePath& path) const;

  // Replaces a character of a text in the code page: the second byte of a double-byte character is never that
  // character.
  std::string replaceInCodePage(std::string_view text, char character, std::string_view to) const;

  // Doubles the backslashes of a path in the code page or in UTF-8.
  std::string doubledBackslashes(std::string_view packetPath) const;

 private:
  const CodePage& codePage_;
  UserMessages& messages_;
};

}  // namespace vernoxa::inline text
