// What records become: the one table of all kinds of records, in drawings and in shared modules.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/record.h"

namespace vernoxa::drawing {

// Where a row of the table is used. A kind has rows of its own for pages and for symbols where they differ, and for the
// library parts and schematic objects of a shared module.
enum class Use { nowhere, page, symbol, pin, modulePart, moduleObject };

// A table of codes, which are compared as whole texts.
struct Look {
  struct Row {
    std::string_view code;
    std::string_view result;
  };

  std::string_view name;  // in the rows of shapes.cpp
  std::span<const Row> rows;
  std::string_view (*otherwise)(std::string_view code);  // what a code looks like that is in no row

  // A view of a table or of the code, and valid as long as that.
  std::string_view of(std::string_view code) const;
};

// Throws std::out_of_range when there is none.
const Look& lookNamed(std::string_view name);

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
extern const std::array<PinShape, 8> pinShapes;

// Where a value of the record stands, and how it is written.
struct Place {
  std::size_t element = 0;
  const Look* look = nullptr;  // none: the text itself
  std::size_t fillStyle = 0;   // of a shape's colour where it may be filled: the element that says so

  // A view of the record or of a table.
  std::string_view valueOf(const Record& record) const {
    if (fillStyle != 0 && record[fillStyle] != "0") {
      return "none";  // hatched shapes too
    }
    return look == nullptr ? record[element] : look->of(record[element]);
  }
};

// An attribute of an element, or a member of a module's item. One without a name is the text that the element shows.
struct ShapeMember {
  struct Piece {
    std::string_view before;
    Place place;
  };

  std::string_view name;
  std::vector<Piece> pieces;
  std::string_view end;

  std::string valueOf(const Record& record) const;
};

struct Shape {
  std::string_view kind;  // element 0 of the record
  std::array<Use, 2> uses;
  std::string_view name;  // what it is called where it is written: an SVG tag, or the name of a module's item
  std::vector<ShapeMember> members;

  bool isFor(Use use) const { return uses[0] == use || uses[1] == use; }
  // A group of elements with an identity: those that are told until the next.
  bool isGroup() const { return name == "g"; }
};

// All rows.
const std::vector<Shape>& shapes();
// The row of a kind; nullptr for one that is not used there.
const Shape* shapeOf(Use use, std::string_view kind);

}  // namespace vernoxa::drawing
