// The text of drawings: elements kept as they are told, and the JSON that they become.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/record.h"
#include "drawing/shapes.h"

namespace vernoxa {

class OutputFile;

constexpr std::string_view elementSeparator = ", ";  // between the elements of an array

// Writes a file of JSON in large pieces, byte for byte as cJSON's formatted printer does, but with CR LF between lines.
// Nothing more is written after the first failure; a full disk is as silent as a missing one.
class JsonFile {
 public:
  explicit JsonFile(OutputFile& file);

  // Text as the file has it.
  void put(std::string_view text);
  // Lines for a place in the file that is indented by so many tabs, with a value, escaped, for each "%" in them.
  void put(std::string_view lines, std::size_t depth, std::initializer_list<std::string_view> values = {});
  // Where so many bytes come next in the file, to be put there at once; nullptr when they are too many for that.
  char* room(std::size_t count);
  // False when not all was written.
  bool finish();

 private:
  static constexpr std::size_t size = std::size_t{64} * 1024;

  OutputFile& file_;
  bool failed_ = false;
  std::size_t used_ = 0;
  std::unique_ptr<char[]> buffer_;
};

// The elements of a page, of a symbol or of a library, in the order in which they were told.
//
// What all elements of a shape have in common stands in the table: of each its row is kept and its values, as the file
// will have them. That is a sixth of the text, in blocks, so that what is there never moves.
class Elements {
 public:
  // Draws the record; one of a kind that is not shown there draws nothing. A "Text" draws an element for each of its
  // lines that is not empty. When memory runs out (std::bad_alloc) all is as before.
  void add(Use use, const Record& record);

  // The same in a fraction of the time for a record as nearly all are, however its texts came: short, ASCII, without
  // quotes, backslashes and control characters. False for any other, which changes nothing.
  bool addPlain(Use use, const Record& record);

  // Writes the elements as those of an array that stands at that depth, an even number up to 6.
  void writeTo(JsonFile& file, std::size_t depth) const;

 private:
  // Elements as they are kept, one behind the other: the row's number, the lengths of the values, the values.
  struct Block {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
    std::size_t used = 0;
  };

  static void appendLines(std::string& elements, const Shape& shape, const Record& record);
  static void append(std::string& elements, const Shape& shape, const Record& record);
  char* room(std::size_t size);

  std::vector<Block> blocks_;
};

// A group with an identity: a page, a symbol or an entry of a library.
struct Group {
  std::string id;
  Elements elements;

  void writeTo(JsonFile& file, std::size_t depth) const;
};

// Draws the shape in red: dot, line, wedge.
void drawPinShape(const PinShape& shape, Elements& elements);

}  // namespace vernoxa
