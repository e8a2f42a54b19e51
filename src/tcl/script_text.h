// Builds the Tcl scripts that go to the host, so that no value from outside can run anything.
//
// Scripts are UTF-8 (any bytes in values are safe). The text of an ordinary value is kept as it is; a character that
// Tcl would act on gets one backslash. Backslashes of a value belong to the caller: a row of a command table doubles
// them or leaves them to Tcl. A character after an odd run of backslashes is escaped already, and a value that ends
// in an odd run gets one backslash more.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace vernoxa {

class ScriptText {
 public:
  ScriptText() = default;
  explicit ScriptText(std::string_view literal) { this->literal(literal); }

  // The plug-in's own text, unchanged. An opening or closing bracket in it is noted: inside "[...]" a "]" of a value
  // would act.
  ScriptText& literal(std::string_view text);
  // "value" between double quotes.
  ScriptText& quoted(std::string_view value);
  // A value in a bare word. Its blanks separate words; line ends become "\n" and "\r" as two characters.
  ScriptText& bare(std::string_view value);
  // {value}; a value that braces cannot hold (unbalanced, or ending in an odd run of backslashes) is written as one
  // bare word instead.
  ScriptText& braced(std::string_view value);
  // A value between two double quotes that directly follow a command word: Tcl reads them as part of a bare word.
  ScriptText& joined(std::string_view value);

  const std::string& text() const { return text_; }

 private:
  enum class Blanks { separate, escape };
  void appendBare(std::string_view value, Blanks blanks);
  bool atWordStart() const;

  std::string text_;
  int bracketDepth_ = 0;
};

}  // namespace vernoxa
