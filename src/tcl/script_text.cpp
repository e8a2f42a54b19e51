#include "tcl/script_text.h"

#include <cstddef>

namespace vernoxa {
namespace {

// Characters that separate words, by Tcl's own table (tclParse.c's rule: space, tab, vertical tab, form feed, CR).
bool isBlank(char c) {
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

ScriptText& ScriptText::literal(std::string_view text) {
  for (const char c : text) {
    bracketDepth_ += c == '[' ? 1 : 0;
    bracketDepth_ -= c == ']' ? 1 : 0;
  }
  text_.append(text);
  return *this;
}

ScriptText& ScriptText::quoted(std::string_view value) {
  text_.push_back('"');
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

ScriptText& ScriptText::bare(std::string_view value) {
  appendBare(value, Blanks::separate);
  return *this;
}

ScriptText& ScriptText::braced(std::string_view value) {
  if (bracesCanHold(value)) {
    text_.append("{").append(value).append("}");
  } else {
    appendBare(value, Blanks::escape);
  }
  return *this;
}

ScriptText& ScriptText::joined(std::string_view value) {
  text_.push_back('"');
  appendBare(value, Blanks::separate);
  text_.push_back('"');
  return *this;
}

bool ScriptText::atWordStart() const {
  return text_.empty() || isBlank(text_.back()) || text_.back() == '[';
}

void ScriptText::appendBare(std::string_view value, Blanks blanks) {
  bool wordStart = atWordStart();
  BackslashRun run;
  for (const char c : value) {
    const bool escaped = run.escapesNext();
    run.take(c);
    if (isLineEnd(c)) {
      text_.append(escaped ? "" : "\\").push_back(c == '\n' ? 'n' : 'r');
      wordStart = false;
      continue;
    }
    const bool separates = isBlank(c) && !escaped && blanks == Blanks::separate;
    const bool acts = c == '[' || c == '$' || c == ';' || (c == ']' && bracketDepth_ > 0) ||
                      (wordStart && (c == '"' || c == '{')) || (isBlank(c) && blanks == Blanks::escape);
    if (acts && !escaped) {
      text_.push_back('\\');
    }
    text_.push_back(c);
    wordStart = separates;
  }
  if (run.escapesNext()) {
    text_.push_back('\\');
  }
}

}  // namespace vernoxa
