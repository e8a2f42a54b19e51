#include "drawing/record.h"

#include <utility>

#include "text/text.h"

namespace vernoxa::drawing {
namespace {

std::string throughCodePage(const TextConverter& converter, std::string_view text) {
  return converter.ansiToUtf8(converter.utf8ToAnsi(text));
}

// Each line for itself, so that a bad one does not change its neighbours; a NUL ends them all.
std::string linesToShow(const TextConverter& converter, std::string_view text, bool convert) {
  std::string result;
  for (std::size_t start = 0;;) {
    const std::size_t end = text.find(lineSeparator, start);
    const std::string_view line = text.substr(start, end - start);
    const auto plain = utf8OfTcl(line);
    result += plain && !convert ? *plain : throughCodePage(converter, line);
    if (end == std::string_view::npos || (plain && line.find(tclNul) != std::string_view::npos)) {
      return result;
    }
    result += lineSeparator;
    start = end + lineSeparator.size();
  }
}

}  // namespace

void Record::keep(std::size_t index, std::string text) {
  set(index, kept_.emplace_front(std::move(text)));
}

void Record::showInCodePage(const TextConverter& converter, bool convertLines) {
  for (std::size_t index = 0; index < size; ++index) {
    const std::string_view text = (*this)[index];
    const bool lines = index == textLines && kind() == textKind;
    if (!isAscii(text)) {
      keep(index, lines ? linesToShow(converter, text, convertLines) : throughCodePage(converter, text));
    }
  }
}

void Record::takeAsUtf8() {
  for (std::size_t index = 0; index < size; ++index) {
    if (const std::string_view text = (*this)[index]; !isAscii(text)) {
      keep(index, utf8OfTcl(text).value_or(std::string(text)));
    }
  }
}

}  // namespace vernoxa::drawing
