#include "drawing/page_elements.h"

#include "drawing/record_kinds.h"

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

std::vector<DrawnKind> makeKinds() {
  const Attribute place = {
      "transform", {"translate(", textOf<1>, " ", textOf<2>, ") rotate(", rotationOf<3>, ") scale(", placeScale, ")"}};
  const Attribute reference = {"xlink:href", {"#", textOf<5>}};
  std::vector<DrawnKind> kinds = sharedKinds(depth);
  // 1 x1, 2 y1, 3 x2, 4 y2, 5 colour, 6 line style, 7 line width or "BusWire"
  kinds.push_back({"Line", ElementForm(depth, "line", nullptr,
                                       {{"style",
                                         {"stroke:", colourOf<5>, ";stroke-width:", lineWidth,
                                          ";fill:none;stroke-dasharray:", lineDash, ";stroke-linecap:round"}},
                                        {"x1", {textOf<1>}},
                                        {"y1", {textOf<2>}},
                                        {"x2", {textOf<3>}},
                                        {"y2", {textOf<4>}}})});
  // 1 x, 2 y, 3 rotation, 4 mirror, 5 symbol
  for (const char* name : {"Port", "Global", "OffPage", "TitleBlock"}) {
    kinds.push_back({name, ElementForm(depth, "use", nullptr, {place, reference})});
  }
  // the same, then 6 id
  kinds.push_back({"Part", ElementForm(depth, "use", nullptr, {{"id", {textOf<6>}}, place, reference})});
  // 1 centre x, 2 centre y, 3 radius, 4 colour, 5 fill style
  kinds.push_back({"Junction", ElementForm(depth, "circle", nullptr,
                                           {{"cx", {textOf<1>}},
                                            {"cy", {textOf<2>}},
                                            {"r", {textOf<3>}},
                                            {"style", {"stroke:none;stroke-width:1;fill:", fillOf<5, 4>}}})});
  return kinds;
}

}  // namespace

void drawPageRecord(const Record& record, ElementSink& sink) {
  static const std::vector<DrawnKind> kinds = makeKinds();
  drawByKind(kinds, record, sink);
}

}  // namespace vernoxa
