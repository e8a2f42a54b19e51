#include "drawing/record_kinds.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "text/decimal.h"

namespace vernoxa {
namespace {

constexpr std::size_t textX = 1;
constexpr std::size_t textY = 2;
constexpr std::size_t textFont = 6;
constexpr std::size_t textRotation = 7;

std::string_view textSize(const Record& record) {
  return fontSize(record[textFont]);
}

template <std::size_t index>
std::string_view widthOf(const Record& record) {
  return strokeWidth(record[index]);
}

template <std::size_t index>
std::string_view dashOf(const Record& record) {
  return dashPattern(record[index]);
}

// A shape's colour, line style and line width stand in the record in this order, from `first` on.
template <std::size_t first>
Attribute styleWith(ValuePiece fillPiece) {
  return {"style",
          {"stroke:", colourOf<first>, ";stroke-width:", widthOf<first + 2>, ";fill:", fillPiece,
           ";stroke-dasharray:", dashOf<first + 1>}};
}

void moveLine(Record& line, std::int64_t number) {
  const std::string_view angle = rotationAngle(line[textRotation]);
  const Decimal shift = (Decimal::read(textSize(line)) + Decimal::whole(2)) * number;
  if (angle == "-90") {
    line.keep(textX, (Decimal::read(line[textX]) + shift).text());
  } else if (angle == "-270") {
    line.keep(textX, (Decimal::read(line[textX]) - shift).text());
  } else {
    line.keep(textY, (Decimal::read(line[textY]) + shift).text());
  }
}

void drawLines(const ElementForm& form, const Record& record, ElementSink& sink) {
  std::int64_t drawn = 0;
  for (std::string_view left = record[textLines]; !left.empty();) {
    const std::string_view text = left.substr(0, left.find(lineSeparator));
    left.remove_prefix(std::min(text.size() + lineSeparator.size(), left.size()));
    if (text.empty()) {
      continue;
    }
    Record line;
    line.show(record);
    line.set(textLines, text);
    if (drawn > 0) {
      moveLine(line, drawn);
    }
    sink.add(form, line);
    ++drawn;
  }
}

}  // namespace

void drawByKind(const std::vector<DrawnKind>& kinds, const Record& record, ElementSink& sink) {
  for (const DrawnKind& kind : kinds) {
    if (kind.name != record.kind()) {
      continue;
    }
    if (kind.name == textKind) {
      drawLines(kind.form, record, sink);
    } else {
      sink.add(kind.form, record);
    }
    return;
  }
}

std::vector<DrawnKind> sharedKinds(std::size_t depth) {
  std::vector<DrawnKind> kinds;
  // 1 x, 2 y, 3 lines, 4 colour, 5 unused, 6 font height, 7 rotation
  kinds.push_back(
      {textKind,
       ElementForm(depth, "text", textOf<textLines>,
                   {{"style", {"stroke:", colourOf<4>, ";stroke-width:0;font-size:", textSize, ";fill:", colourOf<4>}},
                    {"transform",
                     {"translate(", textOf<textX>, ",", textOf<textY>, ") rotate(", rotationOf<textRotation>, ")"}},
                    {"dominant-baseline", {"hanging"}}})});
  // 1 x, 2 y, 3 width, 4 height, 5 colour, 6 line style, 7 line width, 8 fill style, 9 hatch style (unused)
  kinds.push_back({"Box", ElementForm(depth, "rect", nullptr,
                                      {styleWith<5>(fillOf<8, 5>),
                                       {"x", {textOf<1>}},
                                       {"y", {textOf<2>}},
                                       {"width", {textOf<3>}},
                                       {"height", {textOf<4>}}})});
  // centre and radii, then as "Box"
  kinds.push_back({"Ellipse", ElementForm(depth, "ellipse", nullptr,
                                          {styleWith<5>(fillOf<8, 5>),
                                           {"cx", {textOf<1>}},
                                           {"cy", {textOf<2>}},
                                           {"rx", {textOf<3>}},
                                           {"ry", {textOf<4>}}})});
  // 1 path, 2 colour, 3 line style, 4 line width
  for (const char* name : {"Arc", "Bezier"}) {
    kinds.push_back({name, ElementForm(depth, "path", nullptr, {styleWith<2>("none"), {"d", {textOf<1>}}})});
  }
  // as "Arc", then 5 fill style, 6 hatch style (unused)
  kinds.push_back({"Polygon", ElementForm(depth, "path", nullptr, {styleWith<2>(fillOf<5, 2>), {"d", {textOf<1>}}})});
  // 1 points, then as "Arc"
  kinds.push_back(
      {"Polyline", ElementForm(depth, "polyline", nullptr, {styleWith<2>("none"), {"points", {textOf<1>}}})});
  return kinds;
}

}  // namespace vernoxa
