#include "tcl/script.h"

namespace vernoxa::inline tcl {
namespace {

// Characters that separate words, by Tcl's own table (tclParse.c's rule: space, tab, vertical tab, form feed, CR).
bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

bool isLineEnd(char c) {
  return c == '\n' || c == '\r';
}

// Follows the backslashes of a value: after an odd run the next character is escaped already.
class BackslashRun {
 public:
  void take(char c) { odd_ = c == '\\' && !odd_; }
  bool escapesNext() const { return odd_; }

 private:
  bool odd_ = false;
};

bool bracesCanHold(std::string_view value) {
  BackslashRun run;
  int depth = 0;
  for (const char c : value) {
    if (!run.escapesNext()) {
      depth += c == '{' ? 1 : 0;
      depth -= c == '}' ? 1 : 0;
      if (depth < 0) {
        return false;
      }
    }
    run.take(c);
  }
  return depth == 0 && !run.escapesNext();
}

}  // namespace

Script Script::startingWith(Start start) const {
  Script other(*this);
  other.text_.replace(0, startBytes_, start.text());
  other.startBytes_ = start.text().size();
  return other;
}

Script& Script::literal(Literal text) {
  for (const char c : text.text()) {
    bracketDepth_ += c == '[' ? 1 : 0;
    bracketDepth_ -= c == ']' ? 1 : 0;
  }
  text_.append(text.text());
  // Never true: no bare value stands at the beginning of a script or of a nested one.
  wordStart_ = text.text().empty() ? wordStart_ : isSpace(text_.back()) || text_.back() == '[';
  return *this;
}

Script& Script::quoted(std::string_view value) {
  text_.push_back('"');
  if (!wordStart_) {
    appendBare(value, Spaces::escape);
    text_.push_back('"');
    return *this;
  }
  wordStart_ = false;
  BackslashRun run;
  for (const char c : value) {
    if ((c == '"' || c == '[' || c == '$') && !run.escapesNext()) {
      text_.push_back('\\');
    }
    text_.push_back(c);
    run.take(c);
  }
  if (run.escapesNext()) {
    text_.push_back('\\');
  }
  text_.push_back('"');
  return *this;
}

Script& Script::bare(std::string_view value) {
  appendBare(value, Spaces::separate);
  return *this;
}

Script& Script::braced(std::string_view value) {
  if (wordStart_ && value != "*" && bracesCanHold(value)) {
    text_.append("{").append(value).append("}");
    wordStart_ = false;
  } else {
    appendBare(value, Spaces::escape);
  }
  return *this;
}

Script& Script::number(int value) {
  text_.append(std::to_string(value));
  wordStart_ = false;
  return *this;
}

void Script::appendBare(std::string_view value, Spaces spaces) {
  BackslashRun run;
  for (const char c : value) {
    const bool escaped = run.escapesNext();
    run.take(c);
    if (isLineEnd(c)) {
      text_.append(escaped ? "" : "\\").push_back(c == '\n' ? 'n' : 'r');
      wordStart_ = false;
      continue;
    }
    const bool separates = isSpace(c) && !escaped && spaces == Spaces::separate;
    const bool acts = c == '[' || c == '$' || c == ';' || (c == ']' && bracketDepth_ > 0) ||
                      (wordStart_ && (c == '"' || c == '{')) || (isSpace(c) && spaces == Spaces::escape);
    if (acts && !escaped) {
      text_.push_back('\\');
    }
    text_.push_back(c);
    wordStart_ = separates;
  }
  if (run.escapesNext()) {
    text_.push_back('\\');
  }
}

}  // namespace vernoxa::inline tcl
