// The text of drawings: elements kept as they are told, and the JSON that they become, byte for byte as cJSON's
// formatted printer has it but with CR LF between lines.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "drawing/record.h"
#include "drawing/shapes.h"

namespace vernoxa::inline system {
class BufferedFile;
}  // namespace vernoxa::inline system

namespace vernoxa::drawing {

class Layout;
struct ElementText;

constexpr std::string_view elementSeparator = ", ";  // between the elements of an array

// The elements of an array, or groups of elements, in the order in which they were told.
//
// What all elements of a kind have in common is one text: of each its kind is kept and its values, as they came. That
// is a sixth of what the file has, in blocks, so that what is there never moves.
class Elements {
 public:
  enum class In { array, groups };

  // The array's elements, or its groups, are indented by so many tabs; a group's elements by two more.
  Elements(Use use, In in, std::size_t depth);

  // Opens the next group. When memory runs out (std::bad_alloc), none is open.
  void open(const Record& record);
  // Draws the record, in the open group. A "Text" draws an element for each of its lines that is not empty. False for a
  // kind that is not shown there, and where no group is open. When memory runs out, all is as before.
  bool add(const Record& record);
  // Whether a group was opened, or none is needed.
  bool isOpen() const { return open_; }
  bool isEmpty() const { return blocks_.empty(); }
  // Without the array's brackets.
  void writeTo(BufferedFile& file) const;

 private:
  // Elements as they are kept, one behind the other: the number of the kind, and each value in pieces behind their
  // lengths.
  struct Block {
    std::unique_ptr<char[]> bytes;
    std::size_t used = 0;
  };

  void append(const ElementText& text, const Record& record);
  void appendLines(const ElementText& text, const Record& record);
  void appendOne(const ElementText& text, const Record& record);
  char* room(std::size_t most);
  void filled(const char* end);

  const Layout* layout_;
  bool open_;
  std::vector<Block> blocks_;
};

}  // namespace vernoxa::drawing
