// A Tcl script for the host. No value from outside can make it run anything else.
//
// Scripts are UTF-8 (any bytes in values are safe). An ordinary value is kept as it is; each character that Tcl would
// act on gets one backslash. Backslashes in a value are left to the caller, who doubles them or lets Tcl take them as
// escapes. So a character after an odd number of backslashes counts as escaped already, and a value that ends in an odd
// number gets one more.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vernoxa::inline tcl {

// The plug-in's own part of a script, in the code page of the sources. It has to be known when compiling: anything that
// is known only later is a value. It does not compile if a value after it could run something: if it leaves a brace or
// a quote open, or ends in a backslash, in a "$" or where a command begins.
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
    bool escaped = false;
    for (const char c : text) {
      if (escaped) {
        escaped = false;
        continue;
      }
      escaped = c == '\\';
      depth += c == '{' ? 1 : 0;
      depth -= c == '}' ? 1 : 0;
      quoted = quoted != (c == '"');
      if (depth < 0) {
        return false;
      }
    }
    const std::size_t last = text.find_last_not_of(" \t\v\f");
    const bool endActs =
        last != std::string_view::npos && std::string_view("[;\n\r\\$").find(text[last]) != std::string_view::npos;
    return depth == 0 && !quoted && !endActs;
  }

  std::string_view text_;
};

inline constexpr std::string_view nameCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_:";

// The beginning of a script: the name of the command that it calls.
class Start : public Literal {
 public:
  consteval Start(const char* text) : Literal(text) {  // NOLINT(google-explicit-constructor)
    if (std::string_view(text).find_first_of(nameCharacters) != 0) {
      throw "a value would be the command";
    }
  }
};

// The name of a procedure and nothing else.
class ProcedureName {
 public:
  consteval ProcedureName(const char* text) : text_(text) {  // NOLINT(google-explicit-constructor)
    if (text_.empty() || text_.find_first_not_of(nameCharacters) != std::string_view::npos) {
      throw "more than a name";
    }
  }
  constexpr std::string_view text() const { return text_; }

 private:
  std::string_view text_;
};

class Script {
 public:
  explicit Script(Start start) { literal(start); }

  // Kept as it is. Its brackets are counted, since a "]" in a value acts inside "[...]".
  Script& literal(Literal text);
  // "value" in double quotes. In the middle of a word Tcl takes quotes as ordinary characters: there the value
  // continues the word, and its spaces are escaped.
  Script& quoted(std::string_view value);
  // The value without quotes. Its spaces separate words; its line ends become \n and \r, two characters each.
  Script& bare(std::string_view value);
  // {value}. In these cases one word without quotes instead: the braces in the value do not match, it ends in an odd
  // number of backslashes, it is "*" (Tcl gives {*} a meaning), or the place is in the middle of a word.
  Script& braced(std::string_view value);
  Script& number(int value);

  // Gives the same words to another procedure. What stands behind the name means the same as before, since it follows
  // a character of a name again.
  Script& callInstead(ProcedureName procedure);

  const std::string& text() const { return text_; }

 private:
  enum class Spaces { separate, escape };
  enum class At { start, name, arguments };  // of the innermost command
  void appendBare(std::string_view value, Spaces spaces);
  void endCommandName();

  std::string text_;
  int bracketDepth_ = 0;
  bool wordStart_ = true;
  At at_ = At::start;
};

}  // namespace vernoxa::inline tcl
