// The kinds of records and the forms of their elements: how pages and symbols are described.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "drawing/element_form.h"
#include "drawing/record.h"
#include "drawing/style_tables.h"

namespace vernoxa {

struct DrawnKind {
  std::string_view name;
  ElementForm form;
};

// Puts the record into the form of its kind; a record of another kind draws nothing. A "Text" draws an element for each
// of its lines that is not empty; the n-th is moved by n times the font size and 2, in the direction in which lines
// follow each other.
void drawByKind(const std::vector<DrawnKind>& kinds, const Record& record, ElementSink& sink);

// The kinds that pages and symbols share, for elements at that depth.
std::vector<DrawnKind> sharedKinds(std::size_t depth);

// Values of a record's element, through the tables.
template <std::size_t index>
std::string_view textOf(const Record& record) {
  return record[index];
}
template <std::size_t index>
std::string_view colourOf(const Record& record) {
  return colour(record[index]);
}
template <std::size_t index>
std::string_view rotationOf(const Record& record) {
  return rotationAngle(record[index]);
}
template <std::size_t styleIndex, std::size_t colourIndex>
std::string_view fillOf(const Record& record) {
  return fill(record[styleIndex], colour(record[colourIndex]));
}

}  // namespace vernoxa
