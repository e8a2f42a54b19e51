#include "drawing/shapes.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "drawing/style_tables.h"

namespace vernoxa {
namespace {

constexpr unsigned page = static_cast<unsigned>(Use::page);
constexpr unsigned symbol = static_cast<unsigned>(Use::symbol);
constexpr unsigned pin = static_cast<unsigned>(Use::pin);
constexpr unsigned modulePart = static_cast<unsigned>(Use::modulePart);
constexpr unsigned moduleObject = static_cast<unsigned>(Use::moduleObject);

struct Row {
  std::string_view kind;
  unsigned uses;
  std::string_view name;
  // "name=value|name=value". In a value "{3}" is element 3 of the record, "{5 colour}" element 5 through the table of
  // colours, "{8 fill 5}" the fill of style 8 and colour 5. What stands before a first "=" names the member.
  std::string_view members;
};

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
        "style=stroke:{5 colour};stroke-width:{7 page width};fill:none;stroke-dasharray:{6 dash};stroke-linecap:round|"
        "x1={1}|y1={2}|x2={3}|y2={4}"},
    Row{"Line", symbol, "line",
        "style=stroke:{5 colour};stroke-width:{7 own width};stroke-linecap:round|x1={1}|y1={2}|x2={3}|y2={4}"},
    Row{"Line", modulePart | moduleObject, "line", "Start={1} {2}|EndPos={3} {4}|Color={5}|Style={6}|Width={7}"},
    // 1 x, 2 y, 3 rotation, 4 mirror, 5 symbol, of a part 6 id
    Row{"Part", page, "use", "id={6}|transform=translate({1} {2}) rotate({3 angle}) scale({4 scale})|xlink:href=#{5}"},
    Row{"Part", moduleObject, "Part", placed},
    // 1 x, 2 y, 3 lines, 4 colour, 5 unused, 6 font height, 7 rotation; an element for each line
    Row{textKind, page | symbol, "text",
        "={3}|style=stroke:{4 colour};stroke-width:0;font-size:{6 font size};fill:{4 colour}|"
        "transform=translate({1},{2}) rotate({7 angle})|dominant-baseline=hanging"},
    Row{textKind, moduleObject, "Text",
        "Text={3}|Color={4}|Text Location X-Coordinate={1}|Text Location Y-Coordinate={2}|Font={6}|Rotation={7}"},
    // 1 to 4 box, 5 text, 6 colour
    Row{textKind, modulePart, "Text",
        "BoundingBox={1} {2} {3} {4}|Text={5}|Color={6}|Text Location X-Coordinate={1}|Text Location Y-Coordinate={2}"},
    // 1 centre x, 2 centre y, 3 radius, 4 colour, 5 fill style
    Row{"Junction", page, "circle", "cx={1}|cy={2}|r={3}|style=stroke:none;stroke-width:1;fill:{5 fill 4}"},
    Row{"Junction", moduleObject, "Junction", "StartX={1}|StartY={2}"},
    // 1 x, 2 y, 3 to 6 unused, 7 shape, 8 side of the symbol
    Row{"Pin", symbol, "use", "transform=translate({1},{2}) rotate({8 side})|xlink:href={7 pin}"},
    // 1 and 2 start, 3 and 4 hot spot, 5 number, 6 name, 7 type
    Row{"Pin", modulePart, "Pin",
        "StartPoint={1} {2}|HotSpot={3} {4}|PinName={6 unless placeholder}|PinNum={5 unless placeholder}|PinType={7}"},
    // as "Part"
    Row{"Port", page, "use", used},
    Row{"Port", moduleObject, "Port", placed},
    Row{"Global", page, "use", used},
    Row{"Global", moduleObject, "Global", placed},
    Row{"OffPage", page, "use", used},
    Row{"OffPage", moduleObject, "OffPage", placed},
    Row{"TitleBlock", page, "use", used},
    // 1 x, 2 y, 3 width, 4 height, 5 colour, 6 line style, 7 line width, 8 fill style, 9 hatch style; in modules 1 to 4
    // are two corners
    Row{"Box", page | symbol, "rect",
        "style=stroke:{5 colour};stroke-width:{7 width};fill:{8 fill 5};stroke-dasharray:{6 dash}|"
        "x={1}|y={2}|width={3}|height={4}"},
    Row{"Box", modulePart, "Box",
        "UpperLeft={1} {2}|LowerRight={3} {4}|Color={5}|Style={6}|Width={7}|FillStyle={8}|HatchStyle={9}"},
    Row{"Box", moduleObject, "Box",
        "UpperLeft={1} {2}|LowerRight={3} {4}|Color={5}|LineStyle={6}|LineWidth={7}|FillStyle={8}|HatchStyle={9}"},
    // centre and radii, in modules a box; then as "Box"
    Row{"Ellipse", page | symbol, "ellipse",
        "style=stroke:{5 colour};stroke-width:{7 width};fill:{8 fill 5};stroke-dasharray:{6 dash}|"
        "cx={1}|cy={2}|rx={3}|ry={4}"},
    Row{"Ellipse", modulePart, "Ellipse",
        "BoundingBox={1} {2} {3} {4}|Color={5}|LineStyle={6}|LineWidth={7}|FillStyle={8}|HatchStyle={9}"},
    Row{"Ellipse", moduleObject, "Ellipse",
        "Rect={1} {2} {3} {4}|Color={5}|LineStyle={6}|LineWidth={7}|FillStyle={8}|HatchStyle={9}"},
    // 1 path, 2 colour, 3 line style, 4 line width, of a polygon 5 fill style, 6 hatch style
    Row{"Arc", page | symbol, "path", pathShape},
    Row{"Arc", moduleObject, "Arc", "Color={2}|Style={3}|Width={4}|path={1}"},
    Row{"Bezier", page | symbol, "path", pathShape},
    Row{"Bezier", moduleObject, "Bezier", "BezierStart={1 x}{1 gap}{1 y}|Color={2}|Style={3}|Width={4}|path={1}"},
    Row{"Polyline", page | symbol, "polyline",
        "style=stroke:{2 colour};stroke-width:{4 width};fill:none;stroke-dasharray:{3 dash}|points={1}"},
    Row{"Polyline", moduleObject, "Polyline", "PolylineStart={1 x}{1 gap}{1 y}|Color={2}|Style={3}|Width={4}|path={1}"},
    Row{"Polygon", page | symbol, "path",
        "style=stroke:{2 colour};stroke-width:{4 width};fill:{5 fill 2};stroke-dasharray:{3 dash}|d={1}"},
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
static_assert(rows.size() < 256, "an element on a page has one byte for its row");

constexpr std::string_view digits = "0123456789";

bool isSign(char c) {
  return c == '-' || c == '+';
}

// The first number of a text, an exponent included, and what follows it. A sign and a point alone are none.
std::pair<std::string_view, std::string_view> takeNumber(std::string_view text) {
  const std::size_t digit = text.find_first_of(digits);
  if (digit == std::string_view::npos) {
    return {};
  }
  const std::size_t point = text.substr(0, digit).find_last_not_of('.') + 1;
  text.remove_prefix(point > 0 && isSign(text[point - 1]) ? point - 1 : point);
  std::size_t end = std::min(text.find_first_not_of("0123456789.", 1), text.size());
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    const std::size_t exponent = end + (end + 1 < text.size() && isSign(text[end + 1]) ? 2 : 1);
    if (exponent < text.size() && digits.find(text[exponent]) != std::string_view::npos) {
      end = std::min(text.find_first_not_of(digits, exponent), text.size());
    }
  }
  return {text.substr(0, end), text.substr(end)};
}

// The first two numbers of a point list ("10,20 30,40") or path data ("M 10 20 L 30 40"), and a space between two.
std::string_view pathX(std::string_view path) {
  return takeNumber(path).first;
}

std::string_view pathY(std::string_view path) {
  return takeNumber(takeNumber(path).second).first;
}

std::string_view pathGap(std::string_view path) {
  return pathY(path).empty() ? "" : " ";
}

// A line of a symbol gives its width as it is; 0 is the thinnest.
std::string_view ownWidth(std::string_view width) {
  return width == "0" ? "1" : width;
}

// A host's placeholder is not exported.
std::string_view unlessPlaceholder(std::string_view value) {
  return value.find('$') == std::string_view::npos ? value : std::string_view();
}

struct NamedLook {
  std::string_view name;
  std::string_view (*look)(std::string_view);
};

constexpr NamedLook looks[] = {{"colour", colour},
                               {"dash", dashPattern},
                               {"width", strokeWidth},
                               {"page width", pageStrokeWidth},
                               {"own width", ownWidth},
                               {"angle", rotationAngle},
                               {"scale", mirrorScale},
                               {"side", pinSideAngle},
                               {"font size", fontSize},
                               {"pin", pinReference},
                               {"x", pathX},
                               {"gap", pathGap},
                               {"y", pathY},
                               {"unless placeholder", unlessPlaceholder}};

constexpr std::uint8_t takeElement(std::string_view& text) {
  unsigned number = 0;
  for (; !text.empty() && text.front() >= '0' && text.front() <= '9'; text.remove_prefix(1)) {
    number = 10 * number + static_cast<unsigned>(text.front() - '0');
  }
  return number < Record::size ? static_cast<std::uint8_t>(number) : throw std::out_of_range("no record is so long");
}

// What stands between braces.
constexpr Place placeOf(std::string_view text) {
  constexpr std::string_view fillWord = " fill ";
  Place place;
  place.element = takeElement(text);
  if (text.starts_with(fillWord)) {
    text.remove_prefix(fillWord.size());
    place.colour = takeElement(text);
    return place;
  }
  if (!text.empty()) {
    const auto* const named = std::find_if(std::begin(looks), std::end(looks),
                                           [&](const NamedLook& each) { return each.name == text.substr(1); });
    place.look = named != std::end(looks) ? named->look : throw std::out_of_range("no such table");
  }
  return place;
}

// Takes the text up to a character, and the character.
constexpr std::string_view takeUpTo(std::string_view& text, char end) {
  const std::string_view taken = text.substr(0, text.find(end));
  text.remove_prefix(std::min(taken.size() + 1, text.size()));
  return taken;
}

// A row is checked as it is compiled.
constexpr bool canBeRead(const Row& row) {
  std::size_t places = 0;
  for (std::string_view left = row.members; left.find('{') != std::string_view::npos; ++places) {
    takeUpTo(left, '{');
    placeOf(takeUpTo(left, '}'));
  }
  return places <= mostPlaces || (row.uses & (modulePart | moduleObject)) != 0;
}
static_assert(std::all_of(rows.begin(), rows.end(), canBeRead));

ShapeMember memberOf(std::string_view text) {
  ShapeMember member;
  member.name = takeUpTo(text, '=');
  while (!text.empty()) {
    const bool hasPlace = text.find('{') != std::string_view::npos;
    ShapeMember::Piece& piece = member.pieces.emplace_back();
    piece.text = takeUpTo(text, '{');
    if (hasPlace) {
      piece.place = placeOf(takeUpTo(text, '}'));
    }
  }
  return member;
}

std::vector<Shape> readRows() {
  std::vector<Shape> shapes;
  for (const Row& row : rows) {
    Shape& shape =
        shapes.emplace_back(Shape{static_cast<std::uint8_t>(shapes.size()), row.uses, row.kind, row.name, {}, {}});
    for (std::string_view left = row.members; !left.empty();) {
      shape.members.push_back(memberOf(takeUpTo(left, '|')));
      for (const ShapeMember::Piece& piece : shape.members.back().pieces) {
        if (piece.place) {
          shape.places.push_back(*piece.place);
        }
      }
    }
  }
  return shapes;
}

// A short clock pin's line begins at 6 in a drawing, as if it had a dot, but not in a pad stack: readers of both know
// it so.
constexpr std::array<PinShape, 8> pins = {{
    {"#PackagePinLongClockDot", "6", "6", "30", true, true},
    {"#PackagePinLong", "0", "0", "30", false, false},
    {"#PackagePinLongClock", "0", "0", "30", false, true},
    {"#PackagePinLongDot", "6", "6", "30", true, false},
    {"#PackagePinShortClockDot", "6", "6", "10", true, true},
    {"#PackagePinShort", "0", "0", "10", false, false},
    {"#PackagePinShortClock", "6", "0", "10", false, true},
    {"#PackagePinShortDot", "6", "6", "10", true, false},
}};

}  // namespace

std::string_view Place::fillOf(const Record& record) const {
  return fill(record[element], vernoxa::colour(record[colour]));
}

std::string ShapeMember::valueOf(const Record& record) const {
  std::string value;
  for (const Piece& piece : pieces) {
    value.append(piece.text).append(piece.place ? piece.place->valueOf(record) : "");
  }
  return value;
}

const std::vector<Shape>& shapes() {
  static const std::vector<Shape> all = readRows();
  return all;
}

const Shape* shapeOf(Use use, std::string_view kind) {
  for (const Shape& shape : shapes()) {
    if (shape.kind.size() == kind.size() && shape.kind[0] == kind[0] &&
        (shape.uses & static_cast<unsigned>(use)) != 0 && shape.kind == kind) {
      return &shape;
    }
  }
  return nullptr;
}

const std::array<PinShape, 8>& pinShapes() {
  return pins;
}

Json padStack(const PinShape& shape) {
  // left, top, width, height, start angle, sweep
  const std::string dot = R"({"fill":false,"type":"Arc","xy":[0,0],"segs":[[0,-3,6,6,0,360]]},)";
  std::string text = R"({"pads":[)" + (shape.dot ? dot : "") + R"({"fill":false,"type":"line","xy":[0,0],"segs":[[)";
  text.append(shape.padStart).append(",0,").append(shape.lineEnd).append(",0]");
  text.append(shape.clock ? ",[-3,0,0,3],[-3,0,0,-3]" : "")
      .append(R"(]}],"name":")")
      .append(shape.name())
      .append(R"("})");
  return Json::parse(text).document;
}

std::string_view pinReference(std::string_view keywords) {
  const auto has = [keywords](std::string_view word) { return keywords.find(word) != std::string_view::npos; };
  if (has("ZERO")) {
    return {};
  }
  const std::string_view end = has("SHORT") ? "10" : "30";
  const bool clock = has("CLOCK");
  const bool dot = has("DOT");
  const auto* const shape = std::find_if(pins.begin(), pins.end(), [&](const PinShape& each) {
    return each.clock == clock && each.dot == dot && each.lineEnd == end;
  });
  return shape->reference;  // there is one for each combination
}

}  // namespace vernoxa
