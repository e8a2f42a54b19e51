// A text that only grows, in blocks: what is there never moves, and memory stays close to what is written.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace vernoxa {

class OutputFile;

class BlockText {
 public:
  bool empty() const { return size_ == 0; }
  // All or, when memory runs out (std::bad_alloc), nothing.
  void append(std::string_view bytes);
  // False at the first block that could not be written.
  bool writeTo(OutputFile& file) const;

 private:
  static constexpr std::size_t blockSize = std::size_t{64} * 1024;

  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t size_ = 0;
};

}  // namespace vernoxa
