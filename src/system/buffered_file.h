// Writes a file in large pieces.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "system/files.h"

namespace vernoxa::inline system {

// After the first failure nothing more is written. Call finish() at the end: it writes what is still in the buffer.
class BufferedFile {
 public:
  explicit BufferedFile(OutputFile& file) : file_(file), buffer_(std::make_unique_for_overwrite<char[]>(size)) {}

  void put(std::string_view text) {
    while (!text.empty()) {
      char* const to = room(1);
      const std::size_t count = text.copy(to, size - used_);
      text.remove_prefix(count);
      filled(to + count);
    }
  }
  // Room for `most` bytes, 64 KB at most, which the caller fills; filled() then tells where they end.
  char* room(std::size_t most) {
    if (most > size - used_) {
      flush();
    }
    return buffer_.get() + used_;
  }
  void filled(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.get()); }
  // False if anything could not be written.
  bool finish() {
    flush();
    return !failed_;
  }

 private:
  void flush() {
    failed_ = failed_ || !file_.write({buffer_.get(), used_});
    used_ = 0;
  }

  static constexpr std::size_t size = std::size_t{64} * 1024;

  OutputFile& file_;
  bool failed_ = false;
  std::size_t used_ = 0;
  std::unique_ptr<char[]> buffer_;
};

}  // namespace vernoxa::inline system
