#include "export/shapes.h"

#include <cstdint>
#include <string>

#include "export/decimal.h"
#include "export/style_tables.h"

namespace vernoxa {
namespace {

// The record holds colour, line style and line width from `first` on.
void addStyle(Element& element, const Record& record, std::size_t first, std::string_view fillText) {
  element.attribute("style", "stroke:", colour(record[first]), ";stroke-width:", strokeWidth(record[first + 2]),
                    ";fill:", fillText, ";stroke-dasharray:", dashPattern(record[first + 1]));
}

void drawPathWithFill(const Record& record, ElementSink& sink, std::string_view fillText) {
  Element element("path");
  addStyle(element, record, 2, fillText);
  element.attribute("d", record[1]);
  sink.add(element);
}

struct TextPlace {
  std::string x;
  std::string y;
};

TextPlace placeOfLine(const Record& record, std::string_view angle, std::int64_t line) {
  TextPlace place{std::string(record[1]), std::string(record[2])};
  if (line == 0) {
    return place;
  }
  const Decimal shift = (Decimal::read(fontSize(record[6])) + Decimal::whole(2)) * line;
  if (angle == "-90") {
    place.x = (Decimal::read(place.x) + shift).text();
  } else if (angle == "-270") {
    place.x = (Decimal::read(place.x) - shift).text();
  } else {
    place.y = (Decimal::read(place.y) + shift).text();
  }
  return place;
}

void drawTextLine(const Record& record, ElementSink& sink, std::string_view text, std::int64_t line) {
  const std::string_view angle = rotationAngle(record[7]);
  const std::string_view textColour = colour(record[4]);
  const TextPlace place = placeOfLine(record, angle, line);
  Element element("text");
  element.value(text)
      .attribute("style", "stroke:", textColour, ";stroke-width:0;font-size:", fontSize(record[6]),
                 ";fill:", textColour)
      .attribute("transform", "translate(", place.x, ",", place.y, ") rotate(", angle, ")")
      .attribute("dominant-baseline", "hanging");
  sink.add(element);
}

}  // namespace

void drawByKind(std::span<const RecordKind> kinds, const Record& record, ElementSink& sink) {
  for (const RecordKind& kind : kinds) {
    if (kind.name == record.kind()) {
      kind.draw(record, sink);
      return;
    }
  }
}

void drawBox(const Record& record, ElementSink& sink) {
  Element element("rect");
  addStyle(element, record, 5, fill(record[8], colour(record[5])));
  element.attribute("x", record[1])
      .attribute("y", record[2])
      .attribute("width", record[3])
      .attribute("height", record[4]);
  sink.add(element);
}

void drawEllipse(const Record& record, ElementSink& sink) {
  Element element("ellipse");
  addStyle(element, record, 5, fill(record[8], colour(record[5])));
  element.attribute("cx", record[1]).attribute("cy", record[2]).attribute("rx", record[3]).attribute("ry", record[4]);
  sink.add(element);
}

void drawPath(const Record& record, ElementSink& sink) {
  drawPathWithFill(record, sink, "none");
}

void drawPolygon(const Record& record, ElementSink& sink) {
  drawPathWithFill(record, sink, fill(record[5], colour(record[2])));
}

void drawPolyline(const Record& record, ElementSink& sink) {
  Element element("polyline");
  addStyle(element, record, 2, "none");
  element.attribute("points", record[1]);
  sink.add(element);
}

void drawText(const Record& record, ElementSink& sink) {
  std::int64_t drawn = 0;
  for (std::string_view left = record[textLines]; !left.empty();) {
    const std::string_view line = left.substr(0, left.find(lineSeparator));
    if (!line.empty()) {
      drawTextLine(record, sink, line, drawn++);
    }
    left.remove_prefix(std::min(line.size() + lineSeparator.size(), left.size()));
  }
}

}  // namespace vernoxa
