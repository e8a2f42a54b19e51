#include "drawing/symbol_elements.h"

#include "drawing/pin_shapes.h"
#include "drawing/record_kinds.h"

namespace vernoxa {
namespace {

constexpr std::size_t depth = symbolElementDepth;

// The width itself, where 0 means the thinnest.
std::string_view lineWidth(const Record& record) {
  return record[7] == "0" ? "1" : record[7];
}

std::string_view pinShape(const Record& record) {
  return pinReference(record[7]);
}

std::string_view pinAngle(const Record& record) {
  return pinSideAngle(record[8]);
}

std::vector<DrawnKind> makeKinds() {
  std::vector<DrawnKind> kinds = sharedKinds(depth);
  // 1 x1, 2 y1, 3 x2, 4 y2, 5 colour, 6 unused, 7 width
  kinds.push_back(
      {"Line", ElementForm(depth, "line", nullptr,
                           {{"style", {"stroke:", colourOf<5>, ";stroke-width:", lineWidth, ";stroke-linecap:round"}},
                            {"x1", {textOf<1>}},
                            {"y1", {textOf<2>}},
                            {"x2", {textOf<3>}},
                            {"y2", {textOf<4>}}})});
  // 1 x, 2 y, 3 to 6 unused, 7 shape, 8 side of the symbol
  kinds.push_back(
      {"Pin", ElementForm(depth, "use", nullptr,
                          {{"transform", {"translate(", textOf<1>, ",", textOf<2>, ") rotate(", pinAngle, ")"}},
                           {"xlink:href", {pinShape}}})});
  return kinds;
}

}  // namespace

void drawSymbolRecord(const Record& record, ElementSink& sink) {
  static const std::vector<DrawnKind> kinds = makeKinds();
  drawByKind(kinds, record, sink);
}

}  // namespace vernoxa
