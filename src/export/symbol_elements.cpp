#include "export/symbol_elements.h"

#include <array>

#include "export/pin_shapes.h"
#include "export/shapes.h"
#include "export/style_tables.h"

namespace vernoxa {
namespace {

// 1 x1, 2 y1, 3 x2, 4 y2, 5 colour, 6 unused, 7 the width itself, where 0 means the thinnest
void drawLine(const Record& record, ElementSink& sink) {
  const std::string_view width = record[7] == "0" ? "1" : record[7];
  Element element("line");
  element.attribute("style", "stroke:", colour(record[5]), ";stroke-width:", width, ";stroke-linecap:round")
      .attribute("x1", record[1])
      .attribute("y1", record[2])
      .attribute("x2", record[3])
      .attribute("y2", record[4]);
  sink.add(element);
}

// 1 x, 2 y, 3 to 6 unused, 7 pin shape, 8 side of the symbol
void drawPin(const Record& record, ElementSink& sink) {
  const std::string reference = pinReference(record[7]);
  Element element("use");
  element.attribute("transform", "translate(", record[1], ",", record[2], ") rotate(", pinSideAngle(record[8]), ")")
      .attribute("xlink:href", reference);
  sink.add(element);
}

constexpr std::array<RecordKind, 9> kinds = {{{"Line", drawLine},
                                              {"Polygon", drawPolygon},
                                              {"Arc", drawPath},
                                              {"Ellipse", drawEllipse},
                                              {textKind, drawText},
                                              {"Polyline", drawPolyline},
                                              {"Box", drawBox},
                                              {"Bezier", drawPath},
                                              {"Pin", drawPin}}};

}  // namespace

void drawSymbolRecord(const Record& record, ElementSink& sink) {
  drawByKind(kinds, record, sink);
}

}  // namespace vernoxa
