#include "tcl/script.h"

namespace vernoxa::inline tcl {
namespace {

// What separates words in Tcl; CR does too, and counts as a line end here.
bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

bool isLineEnd(char c) {
  return c == '\n' || c == '\r';
}

// Follows the backslashes of a value: after an odd number of them the next character is escaped already.
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

Script& Script::literal(Literal text) {
  for (const char c : text.text()) {
    bracketDepth_ += c == '[' ? 1 : 0;
    bracketDepth_ -= c == ']' ? 1 : 0;
    if (c == '[' || c == ';' || isLineEnd(c)) {
      at_ = At::start;
    } else if (c == ']' || (isSpace(c) && at_ == At::name)) {
      at_ = At::arguments;
    } else if (!isSpace(c) && at_ == At::start) {
      at_ = At::name;
    }
  }
  text_.append(text.text());
  wordStart_ = text.text().empty() ? wordStart_ : isSpace(text_.back());
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
  endCommandName();
  appendBare(value, Spaces::separate);
  return *this;
}

Script& Script::braced(std::string_view value) {
  endCommandName();
  if (wordStart_ && value != "*" && bracesCanHold(value)) {
    text_.append("{").append(value).append("}");
    wordStart_ = false;
  } else {
    appendBare(value, Spaces::escape);
  }
  return *this;
}

Script& Script::number(int value) {
  endCommandName();
  text_.append(std::to_string(value));
  wordStart_ = false;
  return *this;
}

Script& Script::callInstead(ProcedureName procedure) {
  text_.replace(0, text_.find_first_not_of(nameCharacters), procedure.text());
  return *this;
}

// A value must not turn the name of one command into that of another. `quoted` alone may follow it directly: no command
// has a quote in its name.
void Script::endCommandName() {
  if (at_ == At::name) {
    text_.push_back(' ');
    wordStart_ = true;
    at_ = At::arguments;
  }
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
