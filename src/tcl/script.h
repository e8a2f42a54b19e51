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

namespace vernoxa::inline tcl {

// The plug-in's own text, in the code page of the sources. Known when compiling: what is known only later is a value.
// One that leaves a brace or a quote open, ends in a backslash, or ends where a command begins does not compile: a
// value behind it would act.
class Literal {
 public:
  // A Literal is written as a plain string literal.
  consteval Literal(const char* text) : text_(text) {  // NOLINT(google-explicit-constructor)
    if (!mayPrecedeValue(text_)) {
      throw "a value behind this text would act";
    }
  }
  constexpr std::string_view text() const { return text_; }

 private:
  static constexpr bool mayPrecedeValue(std::string_view text) {
    int depth = 0;
    bool quoted = false;
    for (const char c : text) {
      depth += c == '{' ? 1 : 0;
      depth -= c == '}' ? 1 : 0;
      quoted = quoted != (c == '"');
      if (depth < 0) {
        return false;
      }
    }
    const std::size_t last = text.find_last_not_of(' ');
    const bool commandNext =
        last != std::string_view::npos && std::string_view("[;\n\r").find(text[last]) != std::string_view::npos;
    return depth == 0 && !quoted && !text.ends_with('\\') && !commandNext;
  }

  std::string_view text_;
};

// The beginning of a script, which names what is called.
class Start : public Literal {
 public:
  consteval Start(const char* text) : Literal(text) {  // NOLINT(google-explicit-constructor)
    if (std::string_view(text).find_first_not_of(' ') != 0) {
      throw "a value would be the command";
    }
  }
};

class Script {
 public:
  explicit Script(Start start) : startBytes_(start.text().size()) { literal(start); }
  // The same script with another start, whose last word ends as that of the first did.
  Script startingWith(Start start) const;

  // Unchanged. An opening or closing bracket in it is noted: inside "[...]" a "]" of a value would act.
  Script& literal(Literal text);
  // "value" between double quotes. Where no word begins Tcl reads them as part of a bare word: there it is one whose
  // spaces are escaped.
  Script& quoted(std::string_view value);
  // A value in a bare word. Its spaces separate words; line ends become "\n" and "\r" as two characters.
  Script& bare(std::string_view value);
  // {value}; one bare word instead for a value that braces cannot hold (unbalanced, or ending in an odd run of
  // backslashes), for "*", with which braces have another meaning, and where no word begins.
  Script& braced(std::string_view value);
  Script& number(int value);

  const std::string& text() const { return text_; }

 private:
  enum class Spaces { separate, escape };
  void appendBare(std::string_view value, Spaces spaces);

  std::size_t startBytes_;
  std::string text_;
  int bracketDepth_ = 0;
  bool wordStart_ = true;
};

}  // namespace vernoxa::inline tcl
