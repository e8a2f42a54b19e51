#include "system/code_page.h"

#include <algorithm>

namespace vernoxa::inline system {
namespace {

unsigned byteAt(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

bool isContinuation(std::string_view text, std::size_t index) {
  return (byteAt(text, index) & 0xC0U) == 0x80U;
}

struct Utf8Scan {
  bool valid = true;
  bool threeBytes = false;
};

Utf8Scan scanUtf8(std::string_view text) {
  Utf8Scan scan;
  for (std::size_t index = 0; index < text.size();) {
    const std::size_t length = utf8SequenceLength(text, index);
    if (length == 0) {
      return {false, false};
    }
    scan.threeBytes = scan.threeBytes || length == 3;
    index += length;
  }
  return scan;
}

}  // namespace

bool isAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0x80U) != 0; });
}

bool hasNonAscii(std::string_view text) {
  return text.empty() || !isAscii(text);
}

std::size_t utf8SequenceLength(std::string_view text, std::size_t index) {
  const unsigned lead = byteAt(text, index);
  if (lead < 0x80) {
    return 1;
  }
  const bool leads = lead >= 0xC2 && lead <= 0xF4;
  const std::size_t length = lead < 0xE0 ? 2U : lead < 0xF0 ? 3U : 4U;
  if (!leads || index + length > text.size()) {
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

bool isValidUtf8(std::string_view text) {
  return scanUtf8(text).valid;
}

bool isUtf8WithThreeByteSequence(std::string_view text) {
  return scanUtf8(text).threeBytes;
}

}  // namespace vernoxa::inline system
