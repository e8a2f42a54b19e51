// What records become: the one table of all kinds of records, in drawings and in shared modules; and the shapes of
// pins.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/record.h"
#include "text/json.h"

namespace vernoxa {

// Where a row of the table is used. A kind has rows of its own for pages and for symbols where they differ, and for the
// library parts and schematic objects of a shared module.
enum class Use : unsigned { page = 1, symbol = 2, pin = 4, modulePart = 8, moduleObject = 16 };

// Where a value of the record stands.
struct Place {
  std::uint8_t element = 0;
  std::uint8_t colour = 0;                               // of a fill: the element that says its colour
  std::string_view (*look)(std::string_view) = nullptr;  // through one of the style tables; none: the text itself

  bool isText() const { return look == nullptr && colour == 0; }
  // A view of the record or of a table.
  std::string_view valueOf(const Record& record) const {
    return isText() ? record[element] : colour != 0 ? fillOf(record) : look(record[element]);
  }

 private:
  std::string_view fillOf(const Record& record) const;
};

// An attribute of an element, or a member of a module's item. One without a name is the text that the element shows.
struct ShapeMember {
  struct Piece {
    std::string_view text;
    std::optional<Place> place;  // behind the text
  };

  std::string_view name;
  std::vector<Piece> pieces;

  std::string valueOf(const Record& record) const;
};

struct Shape {
  std::uint8_t number;  // the row
  unsigned uses;
  std::string_view kind;  // element 0 of the record
  std::string_view name;  // what it is called where it is written: an SVG tag, or the name of a module's item
  std::vector<ShapeMember> members;
  std::vector<Place> places;  // of all members, in their order
};

constexpr std::size_t mostPlaces = 8;  // no shape has more

// All rows.
const std::vector<Shape>& shapes();
// The row of a kind; nullptr for one that is not used there.
const Shape* shapeOf(Use use, std::string_view kind);

// One of the eight shapes of a pin. Its connection point is at 0,0 and the pin runs along x.
struct PinShape {
  std::string_view reference;  // "#" and the name
  std::string_view lineStart;  // x in a drawing
  std::string_view padStart;   // x in a pad stack
  std::string_view lineEnd;    // x
  bool dot;                    // a bubble of radius 3 before the line
  bool clock;                  // a wedge of two strokes inside the symbol

  std::string_view name() const { return reference.substr(1); }
};

// In the order in which documents define them.
const std::array<PinShape, 8>& pinShapes();

// The shape as an entry of a graphic library's "padstacks".
Json padStack(const PinShape& shape);

// The reference of the shape that the host's keywords describe; empty for a pin of no length, which is not drawn.
std::string_view pinReference(std::string_view keywords);

}  // namespace vernoxa
