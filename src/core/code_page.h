// Conversions between the host's ANSI code page (GBK, 936) and UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace vernoxa {

class UserMessages;

// The conversions of the operating system. A character that the code page lacks becomes the system's default
// character. Bytes that are no text of the source encoding give replacement characters, never a failure. Usable from
// any thread.
class CodePage {
 public:
  virtual ~CodePage() = default;
  virtual std::string toUtf8(std::string_view ansi) const = 0;
  virtual std::string fromUtf8(std::string_view utf8) const = 0;
};

// The conversions as the plug-in uses them. Results end at the first NUL byte of the text.
class TextConverter {
 public:
  TextConverter(const CodePage& codePage, UserMessages& messages) : codePage_(codePage), messages_(messages) {}

  // A failure (memory) shows "GBK格式异常" and gives the empty text.
  std::string ansiToUtf8(std::string_view ansi) const;

  // A text that is no valid UTF-8 is in the code page already and stays as it is. A text of Tcl's is one, and ends at
  // its NUL.
  std::string utf8ToAnsi(std::string_view utf8) const;

  // A name or text from the host on its way into a message (code page): converted when it looks like UTF-8 Chinese.
  std::string messageText(std::string_view hostText) const;

  // A value of a packet on its way into a script (UTF-8): converted unless it is UTF-8 with a three-byte sequence.
  std::string scriptValue(std::string_view packetValue) const;

  // A path that came from the host, goes back to it and may have been in either encoding: any valid UTF-8 stays.
  std::string hostPath(std::string_view path) const;

 private:
  const CodePage& codePage_;
  UserMessages& messages_;
};

}  // namespace vernoxa
