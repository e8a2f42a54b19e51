// Texts as they stand in JSON's strings, byte for byte as cJSON prints them: bytes above 7F pass as they are.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vernoxa {

constexpr std::size_t longestJsonEscape = 6;  // bytes that one becomes at most

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

// Whether no byte must be escaped. In words, since it is asked of every element of a drawing.
inline bool standsInJson(std::string_view text) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  std::uint64_t found = 0;  // in each byte's highest bit
  const auto look = [&found](const char* from) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, from, sizeof(bytes));
    const std::uint64_t quotes = bytes ^ '"' * ones;
    const std::uint64_t backslashes = bytes ^ '\\' * ones;
    found |= ((bytes - ' ' * ones) & ~bytes) | ((quotes - ones) & ~quotes) | ((backslashes - ones) & ~backslashes);
  };
  const char* at = text.data();
  const char* const end = at + text.size();
  if (text.size() < sizeof(found)) {
    return std::all_of(at, end, [](char byte) { return jsonEscapes[static_cast<unsigned char>(byte)] == 0; });
  }
  for (; end - at > static_cast<std::ptrdiff_t>(sizeof(found)); at += sizeof(found)) {
    look(at);
  }
  look(end - sizeof(found));
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

}  // namespace vernoxa
