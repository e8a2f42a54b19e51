#include "export/page_elements.h"

#include <array>

#include "export/shapes.h"
#include "export/style_tables.h"

namespace vernoxa {
namespace {

// 1 x1, 2 y1, 3 x2, 4 y2, 5 colour, 6 line style, 7 line width or "BusWire"
void drawLine(const Record& record, ElementSink& sink) {
  Element element("line");
  element
      .attribute("style", "stroke:", colour(record[5]), ";stroke-width:", pageStrokeWidth(record[7]),
                 ";fill:none;stroke-dasharray:", dashPattern(record[6]), ";stroke-linecap:round")
      .attribute("x1", record[1])
      .attribute("y1", record[2])
      .attribute("x2", record[3])
      .attribute("y2", record[4]);
  sink.add(element);
}

void addPlace(Element& element, const Record& record) {
  element
      .attribute("transform", "translate(", record[1], " ", record[2], ") rotate(", rotationAngle(record[3]),
                 ") scale(", mirrorScale(record[4]), ")")
      .attribute("xlink:href", "#", record[5]);
}

// 1 x, 2 y, 3 rotation, 4 mirror, 5 symbol
void drawSymbol(const Record& record, ElementSink& sink) {
  Element element("use");
  addPlace(element, record);
  sink.add(element);
}

// A symbol with its id in 6
void drawPart(const Record& record, ElementSink& sink) {
  Element element("use");
  element.attribute("id", record[6]);
  addPlace(element, record);
  sink.add(element);
}

// 1 centre x, 2 centre y, 3 radius, 4 colour, 5 fill style
void drawJunction(const Record& record, ElementSink& sink) {
  Element element("circle");
  element.attribute("cx", record[1])
      .attribute("cy", record[2])
      .attribute("r", record[3])
      .attribute("style", "stroke:none;stroke-width:1;fill:", fill(record[5], colour(record[4])));
  sink.add(element);
}

constexpr std::array<RecordKind, 14> kinds = {{{"Line", drawLine},
                                               {"Part", drawPart},
                                               {textKind, drawText},
                                               {"Port", drawSymbol},
                                               {"Global", drawSymbol},
                                               {"OffPage", drawSymbol},
                                               {"TitleBlock", drawSymbol},
                                               {"Box", drawBox},
                                               {"Ellipse", drawEllipse},
                                               {"Arc", drawPath},
                                               {"Polyline", drawPolyline},
                                               {"Polygon", drawPolygon},
                                               {"Bezier", drawPath},
                                               {"Junction", drawJunction}}};

}  // namespace

void drawPageRecord(const Record& record, ElementSink& sink) {
  drawByKind(kinds, record, sink);
}

}  // namespace vernoxa
