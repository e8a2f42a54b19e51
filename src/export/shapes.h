// The shapes that pages and library symbols share, and the table form of both kinds of drawing.
#pragma once

#include <span>
#include <string_view>

#include "export/element.h"
#include "export/record.h"

namespace vernoxa {

// How records of a kind are drawn. Everything taken from the record goes into the sink before the call returns.
struct RecordKind {
  std::string_view name;
  void (*draw)(const Record& record, ElementSink& sink);
};

// Draws the record by the row of its kind; a record of another kind draws nothing.
void drawByKind(std::span<const RecordKind> kinds, const Record& record, ElementSink& sink);

// 1 x, 2 y, 3 width, 4 height, 5 colour, 6 line style, 7 line width, 8 fill style, 9 hatch style (unused)
void drawBox(const Record& record, ElementSink& sink);
// 1 centre x, 2 centre y, 3 radius x, 4 radius y, then as "Box"
void drawEllipse(const Record& record, ElementSink& sink);
// 1 path, 2 colour, 3 line style, 4 line width
void drawPath(const Record& record, ElementSink& sink);
// 1 path, 2 colour, 3 line style, 4 line width, 5 fill style, 6 hatch style (unused)
void drawPolygon(const Record& record, ElementSink& sink);
// 1 points, 2 colour, 3 line style, 4 line width
void drawPolyline(const Record& record, ElementSink& sink);
// 1 x, 2 y, 3 lines, 4 colour, 5 unused, 6 font height, 7 rotation. One element for each line that is not empty; the
// n-th is moved by n times the font size and 2 in the direction in which lines follow each other.
void drawText(const Record& record, ElementSink& sink);

}  // namespace vernoxa
