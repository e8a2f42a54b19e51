// Copies of texts that are nearly all so short that a call costs more than the copy. Each gives the place behind it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vernoxa::inline text {

constexpr std::size_t copyStep = 16;
static_assert(copyStep == 2 * sizeof(std::uint64_t));  // what copyShort() copies by both ends

// Reads nothing behind the text.
inline char* copyShort(char* to, std::string_view text) {
  const char* const from = text.data();
  const std::size_t size = text.size();
  const auto copyBothEnds = [&](auto word) {
    std::memcpy(to, from, sizeof(word));
    std::memcpy(to + size - sizeof(word), from + size - sizeof(word), sizeof(word));
  };
  if (size > copyStep) {
    std::memcpy(to, from, size);
  } else if (size >= sizeof(std::uint64_t)) {
    copyBothEnds(std::uint64_t());
  } else if (size > sizeof(std::uint32_t)) {
    copyBothEnds(std::uint32_t());
  } else if (size > 0) {
    to[0] = from[0];
    to[size / 2] = from[size / 2];
    to[(size - 1) / 2] = from[(size - 1) / 2];
    to[size - 1] = from[size - 1];
  }
  return to + size;
}

// In steps of 16 bytes: where it reads and where it writes there must be so many to spare behind.
inline char* copySteps(char* to, const char* from, std::size_t size) {
  for (std::size_t done = 0; done < size; done += copyStep) {
    std::memcpy(to + done, from + done, copyStep);
  }
  return to + size;
}

}  // namespace vernoxa::inline text
