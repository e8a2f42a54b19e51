#include "drawing/element_list.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "drawing/json_text.h"
#include "drawing/page_writer.h"

namespace vernoxa {
namespace {

// Most symbols fit into a first block, large pages fill many of the last size.
constexpr std::size_t firstBlock = 2048;
constexpr std::size_t largestBlock = std::size_t{64} * 1024;

using Length = std::uint32_t;  // Tcl's texts are shorter than 2^31 bytes
constexpr std::size_t mostValues = 16;

// The address of a form is kept as it is: its size is meant. NOLINTBEGIN(bugprone-sizeof-expression)

// Copies into memory whose size was reckoned before.
class Packer {
 public:
  explicit Packer(char* place) : place_(place) {}

  template <class Value>
  void put(Value value) {
    std::memcpy(place_, &value, sizeof(value));
    place_ += sizeof(value);
  }
  void putText(std::string_view text) { place_ += text.copy(place_, text.size()); }

 private:
  char* place_;
};

class Unpacker {
 public:
  explicit Unpacker(std::string_view bytes) : left_(bytes) {}

  bool atEnd() const { return left_.empty(); }
  template <class Value>
  Value get() {
    Value value{};
    std::memcpy(&value, take(sizeof(value)).data(), sizeof(value));
    return value;
  }
  std::string_view take(std::size_t count) {
    const std::string_view taken = left_.substr(0, count);
    left_.remove_prefix(count);
    return taken;
  }

 private:
  std::string_view left_;
};

}  // namespace

void ElementList::add(const ElementForm& form, const Record& record) {
  std::array<std::string_view, mostValues> values;
  std::size_t count = 0;
  std::size_t size = sizeof(&form);
  for (const RecordValue value : form.values()) {
    values.at(count) = value(record);
    size += sizeof(Length) + values[count++].size();
  }
  Packer packer(room(size));
  packer.put(&form);
  for (std::size_t index = 0; index < count; ++index) {
    packer.put(static_cast<Length>(values[index].size()));
    packer.putText(values[index]);
  }
}
// NOLINTEND(bugprone-sizeof-expression)

void ElementList::writeTo(PageWriter& writer) const {
  bool first = true;
  for (const Block& block : blocks_) {
    for (Unpacker element({block.bytes.get(), block.used}); !element.atEnd(); first = false) {
      std::string& text = writer.text();
      text.append(first ? "" : elementSeparator);
      for (const PrintedPiece& piece : element.get<const ElementForm*>()->printed()) {
        text.append(piece.text);
        if (piece.valueFollows) {
          appendEscaped(text, element.take(element.get<Length>()));
        }
      }
    }
  }
}

char* ElementList::room(std::size_t size) {
  if (blocks_.empty() || blocks_.back().size - blocks_.back().used < size) {
    const std::size_t next = blocks_.empty() ? firstBlock : std::min(2 * blocks_.back().size, largestBlock);
    const std::size_t blockSize = std::max(next, size);
    blocks_.push_back({std::make_unique_for_overwrite<char[]>(blockSize), blockSize, 0});
  }
  Block& block = blocks_.back();
  char* const place = block.bytes.get() + block.used;
  block.used += size;
  return place;
}

}  // namespace vernoxa
