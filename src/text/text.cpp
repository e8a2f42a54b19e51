#include "text/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>

#include "system/system.h"

namespace vernoxa::inline text {
namespace {

unsigned byteAt(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

bool isContinuation(std::string_view text, std::size_t index) {
  return (byteAt(text, index) & 0xC0U) == 0x80U;
}

// The value of a surrogate that starts at `index` (U+D800 to U+DFFF as three bytes, ED A0..BF xx); 0 when none does.
unsigned surrogateAt(std::string_view text, std::size_t index) {
  const bool found = index + 3 <= text.size() && byteAt(text, index) == 0xED && byteAt(text, index + 1) >= 0xA0 &&
                     isContinuation(text, index + 1) && isContinuation(text, index + 2);
  return found ? 0xD000U | (byteAt(text, index + 1) & 0x3FU) << 6U | (byteAt(text, index + 2) & 0x3FU) : 0;
}

bool isHighSurrogate(unsigned value) {
  return value >= 0xD800 && value <= 0xDBFF;
}

// Of a number that is one of the two.
bool isLowSurrogate(unsigned value) {
  return value >= 0xDC00;
}

void appendPair(std::string& text, unsigned high, unsigned low) {
  // UTF-16: ten bits of each half, from U+10000 on.
  const unsigned character = 0x10000U + ((high & 0x3FFU) << 10U | (low & 0x3FFU));
  for (const unsigned byte : {0xF0U | character >> 18U, 0x80U | (character >> 12U & 0x3FU),
                              0x80U | (character >> 6U & 0x3FU), 0x80U | (character & 0x3FU)}) {
    text.push_back(static_cast<char>(byte));
  }
}

}  // namespace

bool looksLikeUtf8Chinese(std::string_view text) {
  const auto lead = std::find_if(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0xE4 && byte <= 0xE9;
  });
  if (lead == text.end()) {
    return false;
  }
  const auto index = static_cast<std::size_t>(lead - text.begin());
  return index + 2 < text.size() - 1 && isContinuation(text, index + 1) && isContinuation(text, index + 2);
}

std::optional<std::string> utf8OfTcl(std::string_view tclText) {
  constexpr std::string_view replacement = "\xEF\xBF\xBD";
  std::string result;
  result.reserve(tclText.size());
  std::size_t end = std::string::npos;
  for (std::size_t index = 0; index < tclText.size();) {
    const std::size_t length = utf8SequenceLength(tclText, index);
    const unsigned first = surrogateAt(tclText, index);
    const unsigned second = surrogateAt(tclText, index + 3);
    if (length > 0) {
      result.append(tclText, index, length);
      index += length;
    } else if (tclText.substr(index).starts_with(tclNul)) {
      end = std::min(end, result.size());
      index += tclNul.size();
    } else if (isHighSurrogate(first) && isLowSurrogate(second)) {
      appendPair(result, first, second);
      index += 6;
    } else if (first != 0) {
      result += replacement;
      index += 3;
    } else {
      return std::nullopt;
    }
  }
  result.resize(std::min(end, result.size()));
  return result;
}

std::vector<std::string> splitFields(std::string_view text, char separator) {
  std::vector<std::string> fields;
  for (std::size_t start = 0;;) {
    const std::size_t end = text.find(separator, start);
    fields.emplace_back(text.substr(start, end - start));
    if (end == std::string_view::npos) {
      return fields;
    }
    start = end + 1;
  }
}

std::vector<std::string> splitItems(std::string_view text, char separator) {
  std::vector<std::string> items = splitFields(text, separator);
  std::erase_if(items, [](const std::string& item) { return item.empty(); });
  return items;
}

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string result;
  std::size_t start = 0;
  while (!from.empty()) {
    const std::size_t found = text.find(from, start);
    if (found == std::string_view::npos) {
      break;
    }
    result.append(text, start, found - start).append(to);
    start = found + from.size();
  }
  return result.append(text, start, std::string_view::npos);
}

std::string doubleBackslashes(std::string_view text) {
  return replaceAll(text, "\\", "\\\\");
}

std::optional<std::string> extensionOf(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  return dot == std::string_view::npos ? std::nullopt : std::optional<std::string>(path.substr(dot + 1));
}

std::string guidText(GuidSource& source) {
  const auto guid = source.create();
  if (!guid) {
    return {};
  }
  const auto& tail = guid->data4;
  std::array<char, 37> buffer{};  // with the NUL behind it
  std::snprintf(buffer.data(), buffer.size(), "%08X-%04X-%04x-%02X%02X-%02X%02X%02X%02X%02X%02X",
                static_cast<unsigned>(guid->data1), static_cast<unsigned>(guid->data2),
                static_cast<unsigned>(guid->data3), tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6],
                tail[7]);
  return buffer.data();
}

}  // namespace vernoxa::inline text
