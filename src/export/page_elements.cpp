#include "export/page_elements.h"

#include <array>
#include <iterator>

#include "export/record_kinds.h"

namespace vernoxa {
namespace {

constexpr std::size_t depth = pageElementDepth;

std::string_view lineWidth(const Record& record) {
  return pageStrokeWidth(record[7]);
}

std::string_view lineDash(const Record& record) {
  return dashPattern(record[6]);
}

std::string_view placeScale(const Record& record) {
  return mirrorScale(record[4]);
}

std::vector<RecordKind> makeKinds() {
  const Attribute place = {
      "transform", {"translate(", textOf<1>, " ", textOf<2>, ") rotate(", rotationOf<3>, ") scale(", placeScale, ")"}};
  const Attribute reference = {"xlink:href", {"#", textOf<5>}};
  // 1 x, 2 y, 3 rotation, 4 mirror, 5 symbol
  const ElementForm symbol(depth, "use", nullptr, {place, reference});
  std::vector<RecordKind> kinds = {
      // 1 x1, 2 y1, 3 x2, 4 y2, 5 colour, 6 line style, 7 line width or "BusWire"
      {"Line", ElementForm(depth, "line", nullptr,
                           {{"style",
                             {"stroke:", colourOf<5>, ";stroke-width:", lineWidth,
                              ";fill:none;stroke-dasharray:", lineDash, ";stroke-linecap:round"}},
                            {"x1", {textOf<1>}},
                            {"y1", {textOf<2>}},
                            {"x2", {textOf<3>}},
                            {"y2", {textOf<4>}}})},
      // a symbol, then 6 id
      {"Part", ElementForm(depth, "use", nullptr, {{"id", {textOf<6>}}, place, reference})},
      {"Port", symbol},
      {"Global", symbol},
      {"OffPage", symbol},
      {"TitleBlock", symbol},
      // 1 centre x, 2 centre y, 3 radius, 4 colour, 5 fill style
      {"Junction", ElementForm(depth, "circle", nullptr,
                               {{"cx", {textOf<1>}},
                                {"cy", {textOf<2>}},
                                {"r", {textOf<3>}},
                                {"style", {"stroke:none;stroke-width:1;fill:", fillOf<5, 4>}}})},
  };
  std::vector<RecordKind> shared = sharedKinds(depth);
  kinds.insert(kinds.end(), std::make_move_iterator(shared.begin()), std::make_move_iterator(shared.end()));
  return kinds;
}

}  // namespace

void drawPageRecord(const Record& record, ElementSink& sink) {
  static const std::vector<RecordKind> kinds = makeKinds();
  drawByKind(kinds, record, sink);
}

}  // namespace vernoxa
