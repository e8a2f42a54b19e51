// Texts as they stand in JSON's strings, byte for byte as cJSON prints them: bytes above 7F pass as they are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vernoxa::inline text {

constexpr std::size_t longestJsonEscape = 6;  // bytes that one becomes at most
static_assert(longestJsonEscape == std::string_view("\\u001f").size());

// What follows the backslash, by bytes; 0 for those that stand as they are.
constexpr std::array<char, 256> jsonEscapes = [] {
  std::array<char, 256> letters{};
  for (std::size_t control = 0; control < ' '; ++control) {
    letters[control] = 'u';
  }
  letters['\b'] = 'b';
  letters['\f'] = 'f';
  letters['\n'] = 'n';
  letters['\r'] = 'r';
  letters['\t'] = 't';
  letters['"'] = '"';
  letters['\\'] = '\\';
  return letters;
}();

// Whether all is ASCII and stands in JSON as it is. In words, since it is asked of each text of a drawing.
inline bool isPlainInJson(std::string_view text) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t spaces = ' ' * ones;
  std::uint64_t found = 0;  // in each byte's highest bit
  const auto look = [&found](std::uint64_t bytes) {
    const std::uint64_t quotes = bytes ^ '"' * ones;
    const std::uint64_t backslashes = bytes ^ '\\' * ones;
    found |= bytes | (bytes - spaces) | ((quotes - ones) & ~quotes) | ((backslashes - ones) & ~backslashes);
  };
  const auto wordAt = [](const char* from, auto word) {
    std::memcpy(&word, from, sizeof(word));
    return word;
  };
  const auto halfAt = [&](const char* from) { return wordAt(from, std::uint32_t()) | spaces << 32U; };
  const auto byteAt = [&](std::size_t index) { return std::uint64_t{static_cast<unsigned char>(text[index])}; };
  const char* at = text.data();
  const std::size_t size = text.size();
  const char* const end = at + size;
  if (size >= sizeof(std::uint64_t)) {
    for (; end - at > static_cast<std::ptrdiff_t>(sizeof(std::uint64_t)); at += sizeof(std::uint64_t)) {
      look(wordAt(at, std::uint64_t()));
    }
    look(wordAt(end - sizeof(std::uint64_t), std::uint64_t()));
  } else if (size > sizeof(std::uint32_t)) {
    look(halfAt(at));
    look(halfAt(end - sizeof(std::uint32_t)));
  } else if (size > 0) {
    look(byteAt(0) | byteAt(size / 2) << 8U | byteAt((size - 1) / 2) << 16U | byteAt(size - 1) << 24U | spaces << 32U);
  }
  return (found & 0x80 * ones) == 0;
}

// Gives the place behind what it wrote.
inline char* putInJson(char* to, std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  for (const char byte : text) {
    const auto value = static_cast<unsigned char>(byte);
    if (jsonEscapes[value] == 0) {
      *to++ = byte;
      continue;
    }
    *to++ = '\\';
    *to++ = jsonEscapes[value];
    if (jsonEscapes[value] == 'u') {
      for (const char digit : {'0', '0', digits[value >> 4U], digits[value & 15U]}) {
        *to++ = digit;
      }
    }
  }
  return to;
}

}  // namespace vernoxa::inline text
