// The text of drawings: elements kept as they are told, and the JSON that they become, byte for byte as cJSON's
// formatted printer has it but with CR LF between lines.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "drawing/record.h"
#include "drawing/shapes.h"
#include "system/buffered_file.h"

namespace vernoxa::drawing {

struct ElementText;
struct Layout;

constexpr std::string_view elementSeparator = ", ";  // between the elements of an array

// How the texts of a record are encoded: as the host gave them, in UTF-8 or in the code page, or all in UTF-8.
enum class Encoding { asGiven, utf8 };

// The elements of an array, or groups of elements, in the order in which they were told.
//
// What all elements of a kind have in common is one text: of each its kind is kept and the texts that its values are
// made of when the file is written. That is a seventh of what the file has, in blocks, so that what is there never
// moves.
class Elements {
 public:
  enum class In { array, group, groups };

  // The array's elements, or its groups, are indented by so many tabs; a group's elements by two more.
  Elements(Use use, In in, std::size_t depth);

  // Draws the record, in the open group; one of a group's kind opens the next, or the only one. A "Text" draws an
  // element for each of its lines that is not empty. False, and all is as before, for a kind that is not shown there,
  // where no group is open, and for texts as given unless all are ASCII and stand in JSON as they are, as nearly all
  // do. When memory runs out (std::bad_alloc), all is as before too, but no group is open where one should have been
  // opened.
  bool add(const Record& record, Encoding encoding);
  // Whether a group was opened, or none is needed.
  bool isOpen() const { return open_; }
  bool isEmpty() const { return blocks_.empty(); }
  // Without the array's brackets.
  void writeTo(BufferedFile& file) const;

 private:
  // Elements as they are kept, one behind the other: the number of the kind, the encoding, the sizes of the texts, the
  // texts.
  struct Block {
    std::unique_ptr<char[]> bytes;
    std::size_t used = 0;
  };

  bool keepLines(const ElementText& text, const Record& record, Encoding encoding);
  bool keep(const ElementText& text, const Record& record, Encoding encoding);

  const Layout* layout_;
  In in_;
  bool open_;
  std::vector<Block> blocks_;
};

}  // namespace vernoxa::drawing
