#include "export/block_text.h"

#include <algorithm>

#include "core/files.h"

namespace vernoxa {

void BlockText::append(std::string_view bytes) {
  while (blocks_.size() * blockSize < size_ + bytes.size()) {
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize));
  }
  while (!bytes.empty()) {
    const std::size_t offset = size_ % blockSize;
    const std::size_t count = std::min(bytes.size(), blockSize - offset);
    bytes.copy(blocks_[size_ / blockSize].get() + offset, count);
    bytes.remove_prefix(count);
    size_ += count;
  }
}

bool BlockText::writeTo(OutputFile& file) const {
  std::size_t left = size_;
  for (std::size_t index = 0; left > 0; ++index) {
    const std::size_t count = std::min(left, blockSize);
    if (!file.write({blocks_[index].get(), count})) {
      return false;
    }
    left -= count;
  }
  return true;
}

}  // namespace vernoxa
