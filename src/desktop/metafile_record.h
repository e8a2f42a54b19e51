// A record of an enhanced metafile, and how a check tells that it must not be played. Facts about records:
// [MS-EMF] 2.3.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vernoxa::desktop {

// What is wrong with a record, for the log; null if nothing is.
using Fault = const char*;

// The bytes of one record with its type and size. Numbers are little-endian.
class MetafileRecord {
 public:
  explicit MetafileRecord(std::string_view bytes) : bytes_(bytes) {}

  std::size_t size() const { return bytes_.size(); }
  std::uint32_t type() const { return number(0); }
  // 0 if it does not lie within the record.
  std::uint32_t number(std::size_t offset) const { return read(offset, 4); }
  std::uint32_t shortNumber(std::size_t offset) const { return read(offset, 2); }

  // Whether `items` items of `itemBytes` bytes each, from `offset` on, lie within the record.
  bool holds(std::uint64_t offset, std::uint64_t items, std::uint64_t itemBytes = 1) const {
    return offset <= bytes_.size() && items <= (bytes_.size() - offset) / itemBytes;
  }
  // Only for bytes that lie within the record.
  std::string_view part(std::size_t offset, std::size_t bytes) const { return bytes_.substr(offset, bytes); }

 private:
  std::uint32_t read(std::size_t offset, std::size_t bytes) const {
    std::uint32_t value = 0;
    for (std::size_t index = bytes; holds(offset, bytes) && index > 0; --index) {
      value = value << 8U | static_cast<unsigned char>(bytes_[offset + index - 1]);
    }
    return value;
  }

  std::string_view bytes_;
};

}  // namespace vernoxa::desktop
