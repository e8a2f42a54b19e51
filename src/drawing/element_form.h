// The forms of drawing elements: an SVG tag and its attributes, with places where a record's values stand.
//
// A form is made once, and what is the same in all its elements is printed once: an element is a form and a few values,
// and its text those values between long pieces of text.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/record.h"

namespace vernoxa {

// What stands at a place: a view of the record's texts or of a table.
using RecordValue = std::string_view (*)(const Record& record);

// Part of an attribute's value: a fixed text, or a place.
struct ValuePiece {
  ValuePiece() = default;
  ValuePiece(const char* fixedText)
      : text(fixedText) {}  // NOLINT(google-explicit-constructor): forms are read as lists
  ValuePiece(std::string_view fixedText) : text(fixedText) {}  // NOLINT(google-explicit-constructor)
  ValuePiece(RecordValue place) : value(place) {}              // NOLINT(google-explicit-constructor)

  std::string_view text;
  RecordValue value = nullptr;
};

// Pieces that a value does not need stay empty.
struct Attribute {
  std::string_view name;
  std::array<ValuePiece, 9> pieces;
};

struct PrintedPiece {
  std::string text;
  bool valueFollows = false;
};

class ElementForm {
 public:
  // `depth`: how many objects and arrays are open around the element where it is printed. `shown`: what a "text"
  // element shows; none for other tags.
  ElementForm(std::size_t depth, std::string_view elementTag, RecordValue shown,
              std::vector<Attribute> elementAttributes);

  std::string_view tag() const { return tag_; }
  RecordValue shownText() const { return shownText_; }
  const std::vector<Attribute>& attributes() const { return attributes_; }
  // The values in the order of their places.
  const std::vector<RecordValue>& values() const { return values_; }
  // The element as page files have it.
  const std::vector<PrintedPiece>& printed() const { return printed_; }

 private:
  void print(std::size_t depth);

  std::string_view tag_;
  RecordValue shownText_;
  std::vector<Attribute> attributes_;
  std::vector<RecordValue> values_;
  std::vector<PrintedPiece> printed_;
};

// Where elements go as they are made. The form and the record are needed only during the call.
class ElementSink {
 public:
  virtual ~ElementSink() = default;
  virtual void add(const ElementForm& form, const Record& record) = 0;
};

// How many objects and arrays are open around elements of a page, and around those of a symbol.
constexpr std::size_t pageElementDepth = 4;
constexpr std::size_t symbolElementDepth = 6;

}  // namespace vernoxa
