#include "core/text.h"

#include <algorithm>
#include <cstddef>

namespace vernoxa {
namespace {

unsigned byteAt(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

bool isContinuation(std::string_view text, std::size_t index) {
  return (byteAt(text, index) & 0xC0U) == 0x80U;
}

// Length of the well-formed sequence that starts at `index`, 0 when it is none (table 3-7 of the Unicode standard).
std::size_t sequenceLength(std::string_view text, std::size_t index) {
  const unsigned lead = byteAt(text, index);
  if (lead < 0x80) {
    return 1;
  }
  std::size_t length = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
  }
  if (length == 0 || index + length > text.size()) {
    return 0;
  }
  const unsigned second = byteAt(text, index + 1);
  const bool outOfRange = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                          (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(text, index + i)) {
      return 0;
    }
  }
  return outOfRange ? 0 : length;
}

// A high and a low surrogate, each as three bytes: ED A0..AF xx, ED B0..BF xx.
bool isSurrogatePair(std::string_view six) {
  return six.size() == 6 && byteAt(six, 0) == 0xED && (byteAt(six, 1) & 0xF0U) == 0xA0 && isContinuation(six, 2) &&
         byteAt(six, 3) == 0xED && (byteAt(six, 4) & 0xF0U) == 0xB0 && isContinuation(six, 5);
}

struct Utf8Scan {
  bool valid = true;
  bool threeBytes = false;
};

Utf8Scan scanUtf8(std::string_view text) {
  Utf8Scan scan;
  for (std::size_t index = 0; index < text.size();) {
    const std::size_t length = sequenceLength(text, index);
    if (length == 0) {
      return {false, false};
    }
    scan.threeBytes = scan.threeBytes || length == 3;
    index += length;
  }
  return scan;
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

bool hasNonAscii(std::string_view text) {
  return text.empty() ||
         std::any_of(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0x80U) != 0; });
}

bool isValidUtf8(std::string_view text) {
  return scanUtf8(text).valid;
}

bool isUtf8WithThreeByteSequence(std::string_view text) {
  return scanUtf8(text).threeBytes;
}

std::string withoutSurrogates(std::string_view tclText) {
  std::string result;
  result.reserve(tclText.size());
  for (std::size_t index = 0; index < tclText.size(); ++index) {
    const std::string_view six = tclText.substr(index, 6);
    if (!isSurrogatePair(six)) {
      result.push_back(tclText[index]);
      continue;
    }
    // UTF-16: ten bits of each half, from U+10000 on.
    const unsigned high = (byteAt(six, 1) & 0x0FU) << 6U | (byteAt(six, 2) & 0x3FU);
    const unsigned low = (byteAt(six, 4) & 0x0FU) << 6U | (byteAt(six, 5) & 0x3FU);
    const unsigned character = 0x10000U + (high << 10U | low);
    for (const unsigned byte : {0xF0U | character >> 18U, 0x80U | (character >> 12U & 0x3FU),
                                0x80U | (character >> 6U & 0x3FU), 0x80U | (character & 0x3FU)}) {
      result.push_back(static_cast<char>(byte));
    }
    index += six.size() - 1;
  }
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

bool isDoubleByteLead(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x81 && value <= 0xFE;
}

std::string replaceInCodePage(std::string_view text, char character, std::string_view to) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (isDoubleByteLead(text[index]) && index + 1 < text.size()) {
      result.append(text, index++, 2);
    } else if (text[index] == character) {
      result.append(to);
    } else {
      result.push_back(text[index]);
    }
  }
  return result;
}

std::string doubleBackslashes(std::string_view text) {
  return replaceAll(text, "\\", "\\\\");
}

std::string withoutLastComponent(std::string_view path) {
  std::size_t last = std::string_view::npos;
  for (std::size_t index = 0; index < path.size(); ++index) {
    if (isDoubleByteLead(path[index]) && index + 1 < path.size()) {
      ++index;
    } else if (path[index] == '\\') {
      last = index;
    }
  }
  return std::string(path.substr(0, last));
}

std::optional<std::string> extensionOf(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  return dot == std::string_view::npos ? std::nullopt : std::optional<std::string>(path.substr(dot + 1));
}

}  // namespace vernoxa
