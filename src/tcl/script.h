// A Tcl script for the host, which no value from outside can make run anything else.
//
// Scripts are UTF-8 (any bytes in values are safe). The text of an ordinary value is kept as it is; a character that
// Tcl would act on gets one backslash. Backslashes of a value belong to the caller: a row of a command table doubles
// them or leaves them to Tcl. A character after an odd run of backslashes is escaped already, and a value that ends
// in an odd run gets one backslash more.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vernoxa {

// The plug-in's own text, in the code page of the sources. Known when compiling: what is known only later is a value.
class Literal {
 public:
  // A Literal is written as a plain string literal.
  consteval Literal(const char* text) : text_(text) {}  // NOLINT(google-explicit-constructor)
  constexpr std::string_view text() const { return text_; }

 private:
  std::string_view text_;
};

class Script {
 public:
  explicit Script(Literal start) : startBytes_(start.text().size()) { literal(start); }
  // The same script with another start, whose last word ends as that of the first did.
  Script startingWith(Literal start) const;

  // Unchanged. An opening or closing bracket in it is noted: inside "[...]" a "]" of a value would act.
  Script& literal(Literal text);
  // "value" between double quotes.
  Script& quoted(std::string_view value);
  // A value in a bare word. Its spaces separate words; line ends become "\n" and "\r" as two characters.
  Script& bare(std::string_view value);
  // {value}; a value that braces cannot hold (unbalanced, or ending in an odd run of backslashes) is written as one
  // bare word instead.
  Script& braced(std::string_view value);
  // A value between two double quotes that directly follow a command word: Tcl reads them as part of a bare word.
  Script& joined(std::string_view value);
  Script& number(int value);

  const std::string& text() const { return text_; }

 private:
  enum class Spaces { separate, escape };
  void appendBare(std::string_view value, Spaces spaces);
  bool atWordStart() const;

  std::size_t startBytes_;
  std::string text_;
  int bracketDepth_ = 0;
};

}  // namespace vernoxa
