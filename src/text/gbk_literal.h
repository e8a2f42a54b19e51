// Texts of the plug-in's own in code page 936, for which it was made, whatever character set a compiler writes.
//
// u8"位号重名"_gbk is what a plain literal would be: an array of characters with a NUL behind it. It is made while
// compiling; a character that the table does not have does not compile. A byte that is no UTF-8 stays as it is.
#pragma once

#include <cstddef>
#include <stdexcept>

namespace vernoxa::inline text {

struct GbkRow {
  const char16_t* characters;
  const char* bytes;  // two for each of them
};

// In the order of Unicode. A new character goes to its place, with its bytes as the code page has them.
inline constexpr GbkRow gbkRows[] = {
    {u"éぇ一不个中乗他件位", "\xA8\xA6\xA4\xA7\xD2\xBB\xB2\xBB\xB8\xF6\xD6\xD0\x81\x5C\xCB\xFB\xBC\xFE\xCE\xBB"},
    {u"值元先其出动助包原取", "\xD6\xB5\xD4\xAA\xCF\xC8\xC6\xE4\xB3\xF6\xB6\xAF\xD6\xFA\xB0\xFC\xD4\xAD\xC8\xA1"},
    {u"号同名含启器围图在块", "\xBA\xC5\xCD\xAC\xC3\xFB\xBA\xAC\xC6\xF4\xC6\xF7\xCE\xA7\xCD\xBC\xD4\xDA\xBF\xE9"},
    {u"复多失娴嬭字存封属工", "\xB8\xB4\xB6\xE0\xCA\xA7\xE6\xB5\x8B\xE8\xD7\xD6\xB4\xE6\xB7\xE2\xCA\xF4\xB9\xA4"},
    {u"常开异式引径性惧户手", "\xB3\xA3\xBF\xAA\xD2\xEC\xCA\xBD\xD2\xFD\xBE\xB6\xD0\xD4\xBE\xE5\xBB\xA7\xCA\xD6"},
    {u"打择据接摆收放数文料", "\xB4\xF2\xD4\xF1\xBE\xDD\xBD\xD3\xB0\xDA\xCA\xD5\xB7\xC5\xCA\xFD\xCE\xC4\xC1\xCF"},
    {u"新无有未格桌模法源澜", "\xD0\xC2\xCE\xDE\xD3\xD0\xCE\xB4\xB8\xF1\xD7\xC0\xC4\xA3\xB7\xA8\xD4\xB4\xC0\xBD"},
    {u"片理用由电瘯的目知程", "\xC6\xAC\xC0\xED\xD3\xC3\xD3\xC9\xB5\xE7\xAF\x95\xB5\xC4\xC4\xBF\xD6\xAA\xB3\xCC"},
    {u"符第编网置脚范表装要", "\xB7\xFB\xB5\xDA\xB1\xE0\xCD\xF8\xD6\xC3\xBD\xC5\xB7\xB6\xB1\xED\xD7\xB0\xD2\xAA"},
    {u"览计设误请读败贴超路", "\xC0\xC0\xBC\xC6\xC9\xE8\xCE\xF3\xC7\xEB\xB6\xC1\xB0\xDC\xCC\xF9\xB3\xAC\xC2\xB7"},
    {u"软过连选重鏀错阻非面", "\xC8\xED\xB9\xFD\xC1\xAC\xD1\xA1\xD6\xD8\xE6\x94\xB4\xED\xD7\xE8\xB7\xC7\xC3\xE6"},
    {u"页项预", "\xD2\xB3\xCF\xEE\xD4\xA4"},
};

template <std::size_t size>
struct Utf8Literal {
  char8_t bytes[size];

  // implicit, so that a literal becomes one
  consteval Utf8Literal(const char8_t (&literal)[size]) {
    for (std::size_t at = 0; at < size; ++at) {
      bytes[at] = literal[at];
    }
  }

  // Calls take(character, bytes) for each character of two or three bytes, and take(0, bytes) for every other byte.
  template <class Take>
  constexpr void read(Take take) const {
    for (std::size_t at = 0; at < size;) {
      const std::size_t length = bytes[at] >= 0xE0U && bytes[at] < 0xF0U   ? 3
                                 : bytes[at] >= 0xC2U && bytes[at] < 0xE0U ? 2
                                                                           : 1;
      char32_t character = length == 3 ? bytes[at] & 0x0FU : bytes[at] & 0x1FU;
      for (std::size_t next = at + 1; next < at + length; ++next) {
        character = next < size && (bytes[next] & 0xC0U) == 0x80U ? (character << 6U) | (bytes[next] & 0x3FU) : 0;
      }
      take(length == 1 ? 0 : static_cast<char16_t>(character), bytes[at]);
      at += character == 0 ? 1 : length;  // of a broken one the first byte alone
    }
  }
};

constexpr const char* gbkBytesOf(char16_t character) {
  for (const GbkRow& row : gbkRows) {
    for (std::size_t at = 0; row.characters[at] != 0; ++at) {
      if (row.characters[at] == character) {
        return row.bytes + 2 * at;
      }
    }
  }
  throw std::out_of_range("a character that the table does not have");
}

template <Utf8Literal literal>
struct GbkLiteral {
  static consteval std::size_t sizeOf() {
    std::size_t size = 0;
    literal.read([&size](char16_t character, char8_t) { size += character == 0 ? 1U : 2U; });
    return size;
  }

  char bytes[sizeOf()];

  consteval GbkLiteral() : bytes() {
    std::size_t at = 0;
    literal.read([this, &at](char16_t character, char8_t byte) {
      if (character == 0) {
        bytes[at++] = static_cast<char>(byte);
        return;
      }
      const char* const two = gbkBytesOf(character);
      bytes[at++] = two[0];
      bytes[at++] = two[1];
    });
  }
};

template <Utf8Literal literal>
inline constexpr GbkLiteral<literal> gbkLiteral{};

#ifdef __clang_analyzer__
// clang-tidy 14 dies of a type whose argument is a text, so it reads another text in its place.
inline constexpr char anyText[] = "text";
constexpr auto operator""_gbk(const char8_t*, std::size_t) -> const char (&)[sizeof anyText] {
  return anyText;
}
#else
template <Utf8Literal literal>
constexpr auto operator""_gbk() -> const char (&)[GbkLiteral<literal>::sizeOf()] {
  return gbkLiteral<literal>.bytes;
}
#endif

}  // namespace vernoxa::inline text
