#include "drawing/shapes.h"

#include <algorithm>

#include "text/text.h"

namespace vernoxa::drawing {
namespace {

using Uses = std::array<Use, 2>;

struct Row {
  std::string_view kind;
  Uses uses;
  std::string_view name;
  // "name=value|name=value". In a value "{3}" is element 3 of the record, "{5 colour}" how element 5 looks as a colour,
  // "{5 fill 8}" the same where element 8 is the style of a filled shape. What stands before a first "=" names the
  // member.
  std::string_view members;
};

constexpr Uses page{Use::page}, symbol{Use::symbol}, drawing{Use::page, Use::symbol};
constexpr Uses pin{Use::pin}, symbolOrPin{Use::symbol, Use::pin};
constexpr Uses modulePart{Use::modulePart}, moduleObject{Use::moduleObject};
constexpr Uses modules{Use::modulePart, Use::moduleObject};

constexpr std::string_view wire = "WireStart={1} {2}|WireEndPos={3} {4}|Color={5}|Style={6}|Width={7}";
constexpr std::string_view used = "transform=translate({1} {2}) rotate({3 angle}) scale({4 scale})|xlink:href=#{5}";
constexpr std::string_view placed = "Location={1} {2}|Rotation={3}|Mirror={4}|Package={5}";
constexpr std::string_view pathShape =
    "style=stroke:{2 colour};stroke-width:{4 width};fill:none;stroke-dasharray:{3 dash}|d={1}";

// Those that pages hold most of come first. Keys of modules differ between kinds ("LineStyle" and "Style", "line" in
// lower case, a second "Color" in "Polyline"): readers of the files know each as it stands. Kinds that are not shown
// ("Property", "BezierPart") have no row.
constexpr std::array rows = {
    // 1 x1, 2 y1, 3 x2, 4 y2, 5 colour, 6 line style, 7 line width: on a page also "BusWire", in a symbol as it is
    Row{"Line", page, "line",
        "style=stroke:{5 colour};stroke-width:{7 page-width};fill:none;stroke-dasharray:{6 dash};stroke-linecap:round|"
        "x1={1}|y1={2}|x2={3}|y2={4}"},
    Row{"Line", symbol, "line",
        "style=stroke:{5 colour};stroke-width:{7 own-width};stroke-linecap:round|x1={1}|y1={2}|x2={3}|y2={4}"},
    Row{"Line", modules, "line", "Start={1} {2}|EndPos={3} {4}|Color={5}|Style={6}|Width={7}"},
    // 1 x, 2 y, 3 rotation, 4 mirror, 5 symbol, of a part 6 id
    Row{"Part", page, "use", "id={6}|transform=translate({1} {2}) rotate({3 angle}) scale({4 scale})|xlink:href=#{5}"},
    Row{"Part", moduleObject, "Part", placed},
    // 1 x, 2 y, 3 lines, 4 colour, 5 unused, 6 font height, 7 rotation; an element for each line
    Row{textKind, drawing, "text",
        "={3}|style=stroke:{4 colour};stroke-width:0;font-size:{6 font-size};fill:{4 colour}|"
        "transform=translate({1},{2}) rotate({7 angle})|dominant-baseline=hanging"},
    Row{textKind, moduleObject, "Text",
        "Text={3}|Color={4}|Text Location X-Coordinate={1}|Text Location Y-Coordinate={2}|Font={6}|Rotation={7}"},
    // 1 to 4 box, 5 text, 6 colour
    Row{textKind, modulePart, "Text",
        "BoundingBox={1} {2} {3} {4}|Text={5}|Color={6}|Text Location X-Coordinate={1}|Text Location Y-Coordinate={2}"},
    // 1 centre x, 2 centre y, 3 radius, 4 colour, 5 fill style
    Row{"Junction", page, "circle", "cx={1}|cy={2}|r={3}|style=stroke:none;stroke-width:1;fill:{4 fill 5}"},
    Row{"Junction", moduleObject, "Junction", "StartX={1}|StartY={2}"},
    // 1 x, 2 y, 3 to 6 unused, 7 shape, 8 side of the symbol
    Row{"Pin", symbol, "use", "transform=translate({1},{2}) rotate({8 side})|xlink:href={7 pin}"},
    // 1 and 2 start, 3 and 4 hot spot, 5 number, 6 name, 7 type
    Row{"Pin", modulePart, "Pin",
        "StartPoint={1} {2}|HotSpot={3} {4}|PinName={6 unless-placeholder}|PinNum={5 unless-placeholder}|PinType={7}"},
    // as "Part"
    Row{"Port", page, "use", used},
    Row{"Port", moduleObject, "Port", placed},
    Row{"Global", page, "use", used},
    Row{"Global", moduleObject, "Global", placed},
    Row{"OffPage", page, "use", used},
    Row{"OffPage", moduleObject, "OffPage", placed},
    Row{"TitleBlock", page, "use", used},
    // 1 name
    Row{"Name", symbolOrPin, "g", "id={1}"},
    Row{"Page", page, "g", "id={1}"},
    // 1 x, 2 y, 3 width, 4 height, 5 colour, 6 line style, 7 line width, 8 fill style, 9 hatch style; in modules 1 to 4
    // are two corners
    Row{"Box", drawing, "rect",
        "style=stroke:{5 colour};stroke-width:{7 width};fill:{5 fill 8};stroke-dasharray:{6 dash}|"
        "x={1}|y={2}|width={3}|height={4}"},
    Row{"Box", modulePart, "Box",
        "UpperLeft={1} {2}|LowerRight={3} {4}|Color={5}|Style={6}|Width={7}|FillStyle={8}|HatchStyle={9}"},
    Row{"Box", moduleObject, "Box",
        "UpperLeft={1} {2}|LowerRight={3} {4}|Color={5}|LineStyle={6}|LineWidth={7}|FillStyle={8}|HatchStyle={9}"},
    // centre and radii, in modules a box; then as "Box"
    Row{"Ellipse", drawing, "ellipse",
        "style=stroke:{5 colour};stroke-width:{7 width};fill:{5 fill 8};stroke-dasharray:{6 dash}|"
        "cx={1}|cy={2}|rx={3}|ry={4}"},
    Row{"Ellipse", modulePart, "Ellipse",
        "BoundingBox={1} {2} {3} {4}|Color={5}|LineStyle={6}|LineWidth={7}|FillStyle={8}|HatchStyle={9}"},
    Row{"Ellipse", moduleObject, "Ellipse",
        "Rect={1} {2} {3} {4}|Color={5}|LineStyle={6}|LineWidth={7}|FillStyle={8}|HatchStyle={9}"},
    // 1 path, 2 colour, 3 line style, 4 line width, of a polygon 5 fill style, 6 hatch style
    Row{"Arc", drawing, "path", pathShape},
    Row{"Arc", moduleObject, "Arc", "Color={2}|Style={3}|Width={4}|path={1}"},
    Row{"Bezier", drawing, "path", pathShape},
    Row{"Bezier", moduleObject, "Bezier", "BezierStart={1 x}{1 gap}{1 y}|Color={2}|Style={3}|Width={4}|path={1}"},
    Row{"Polyline", drawing, "polyline",
        "style=stroke:{2 colour};stroke-width:{4 width};fill:none;stroke-dasharray:{3 dash}|points={1}"},
    Row{"Polyline", moduleObject, "Polyline", "PolylineStart={1 x}{1 gap}{1 y}|Color={2}|Style={3}|Width={4}|path={1}"},
    Row{"Polygon", drawing, "path",
        "style=stroke:{2 colour};stroke-width:{4 width};fill:{2 fill 5};stroke-dasharray:{3 dash}|d={1}"},
    Row{"Polygon", moduleObject, "Polygon",
        "PolygonStart={1 x}{1 gap}{1 y}|Color={2}|Style={3}|Width={4}|FillStyle={5}|HatchStyle={6}|path={1}"},
    // of library parts in modules: 1 to 4 box, 5 and 6 start, 7 and 8 end, 9 colour, 10 line style, 11 line width
    Row{"Arc", modulePart, "Arc",
        "BoundingBox={1} {2} {3} {4}|Start={5} {6}|EndPos={7} {8}|Color={9}|Style={10}|Width={11}"},
    // 1 and 2 start, 3 colour, 4 line style, 5 line width, of a polygon 6 fill style, 7 hatch style; then the path
    Row{"Bezier", modulePart, "Bezier", "BezierStart={1} {2}|Color={3}|Style={4}|Width={5}|path={6}"},
    Row{"Polyline", modulePart, "Polyline", "PolylineStart={1} {2}|Color={3}|Style={4}|Width={5}|Color={3}|path={6}"},
    Row{"Polygon", modulePart, "Polygon",
        "PolygonStart={1} {2}|Color={3}|Style={4}|Width={5}|FillStyle={6}|HatchStyle={7}|path={8}"},
    // as "Line" and "Text" of a page
    Row{"Wire", moduleObject, "Wire", wire},
    Row{"BusWire", moduleObject, "BusWire", wire},
    Row{"BusEntry", moduleObject, "BusEntry", "BusEntryStart={1} {2}|BusEntryEndPos={3} {4}|Color={5}"},
    Row{"Alias", moduleObject, "Alias", "Location={1} {2}|Text={3}|Color={4}|Font={6}|Rotation={7}"},
    // 1 x, 2 y
    Row{"BitMap", moduleObject, "BitMap", "Location={1} {2}"},
    // parts of a pin's shape: 1 and 2 ends of the line
    Row{"dot", pin, "circle", "cx=3|cy=0|r=3|style=stroke:#FF0000;stroke-width:1;fill:none"},
    Row{"line", pin, "line", "x1={1}|y1=0|x2={2}|y2=0|style=stroke:#FF0000;stroke-width:1;fill:none"},
    Row{"wedge down", pin, "line", "x1=-3|y1=0|x2=0|y2=3|style=stroke:#FF0000;stroke-width:1;fill:none"},
    Row{"wedge up", pin, "line", "x1=-3|y1=0|x2=0|y2=-3|style=stroke:#FF0000;stroke-width:1;fill:none"},
};

static_assert(rows.size() <= 256);  // a byte tells them apart

// What stands between braces.
Place placeOf(std::string_view text) {
  const std::vector<std::string> words = splitFields(text, ' ');
  Place place{std::stoul(words[0])};
  if (words.size() > 1) {
    place.look = &lookNamed(words[1]);
  }
  if (words.size() > 2) {
    place.fillStyle = std::stoul(words[2]);
  }
  return place;
}

// Takes the text up to a character, and the character.
std::string_view takeUpTo(std::string_view& text, char end) {
  const std::string_view taken = text.substr(0, text.find(end));
  text.remove_prefix(std::min(taken.size() + 1, text.size()));
  return taken;
}

ShapeMember memberOf(std::string_view text) {
  ShapeMember member{takeUpTo(text, '='), {}, {}};
  while (text.find('{') != std::string_view::npos) {
    const std::string_view before = takeUpTo(text, '{');
    member.pieces.push_back({before, placeOf(takeUpTo(text, '}'))});
  }
  member.end = text;
  return member;
}

std::vector<Shape> readRows() {
  std::vector<Shape> shapes;
  for (const Row& row : rows) {
    Shape& shape = shapes.emplace_back(Shape{row.kind, row.uses, row.name, {}});
    for (std::string_view left = row.members; !left.empty();) {
      shape.members.push_back(memberOf(takeUpTo(left, '|')));
    }
  }
  return shapes;
}

}  // namespace

std::string ShapeMember::valueOf(const Record& record) const {
  std::string value;
  for (const Piece& piece : pieces) {
    value.append(piece.before).append(piece.place.valueOf(record));
  }
  return value.append(end);
}

const std::vector<Shape>& shapes() {
  static const std::vector<Shape> all = readRows();
  return all;
}

const Shape* shapeOf(Use use, std::string_view kind) {
  for (const Shape& shape : shapes()) {
    if (shape.isFor(use) && shape.kind == kind) {
      return &shape;
    }
  }
  return nullptr;
}

}  // namespace vernoxa::drawing
