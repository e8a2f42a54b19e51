#include "drawing/json_text.h"

#include <array>

namespace vernoxa {
namespace {

// One line end and more tabs than anything here is deep.
constexpr std::string_view lineStart = "\r\n\t\t\t\t\t\t\t\t\t\t\t\t";

// What stands behind the backslash: a letter, 'u' for four hexadecimal digits, or 0 when the byte needs no escaping.
constexpr std::array<char, 256> escapes = [] {
  std::array<char, 256> table{};
  for (std::size_t byte = 0; byte < 0x20; ++byte) {
    table[byte] = 'u';
  }
  table['\b'] = 'b';
  table['\f'] = 'f';
  table['\n'] = 'n';
  table['\r'] = 'r';
  table['\t'] = 't';
  table['"'] = '"';
  table['\\'] = '\\';
  return table;
}();

char escapeOf(char byte) {
  return escapes[static_cast<unsigned char>(byte)];
}

void appendEscape(std::string& out, char byte) {
  constexpr std::string_view digits = "0123456789abcdef";
  out += '\\';
  out += escapeOf(byte);
  if (escapeOf(byte) == 'u') {
    const auto value = static_cast<unsigned char>(byte);
    out.append("00");
    out += digits[value >> 4U];
    out += digits[value & 15U];
  }
}

}  // namespace

void appendEscaped(std::string& out, std::string_view text) {
  std::size_t start = 0;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (escapeOf(text[index]) != 0) {
      out.append(text, start, index - start);
      if (text[index] == '\0') {  // ends a text wherever it is read
        return;
      }
      appendEscape(out, text[index]);
      start = index + 1;
    }
  }
  out.append(text, start, std::string_view::npos);
}

void JsonText::openObject() {
  out_ += '{';
  ++depth_;
  first_ = true;
}

void JsonText::name(std::string_view memberName) {
  if (!first_) {
    out_ += ',';
  }
  first_ = false;
  newLine();
  out_.append("\"").append(memberName).append("\":\t");
}

void JsonText::closeObject() {
  --depth_;
  newLine();
  out_ += '}';
  first_ = false;
}

void JsonText::openArray() {
  out_ += '[';
  ++depth_;
}

void JsonText::closeArray() {
  out_ += ']';
  --depth_;
  first_ = false;
}

void JsonText::member(std::string_view memberName, std::string_view text) {
  name(memberName);
  out_ += '"';
  appendEscaped(out_, text);
  out_ += '"';
}

void JsonText::newLine() {
  out_.append(lineStart, 0, 2 + depth_);
}

}  // namespace vernoxa
