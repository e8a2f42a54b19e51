#include "modules/module_records.h"

#include <algorithm>

namespace vernoxa {
namespace {

constexpr auto placeholder = MemberRule::placeholder;
constexpr auto pathStart = MemberRule::pathStart;

// Keys differ between kinds ("LineStyle" and "Style", "line" in lower case, a second "Color" in "Polyline"): readers
// of the module know each as it stands.
// clang-format off
constexpr std::array libraryElements = {
    RecordKind{"Line", "line", {{{"Start", 1, 2}, {"EndPos", 3, 2}, {"Color", 5}, {"Style", 6}, {"Width", 7}}}},
    RecordKind{"Box", "Box", {{{"UpperLeft", 1, 2}, {"LowerRight", 3, 2}, {"Color", 5}, {"Style", 6}, {"Width", 7},
                               {"FillStyle", 8}, {"HatchStyle", 9}}}},
    RecordKind{"Arc", "Arc", {{{"BoundingBox", 1, 4}, {"Start", 5, 2}, {"EndPos", 7, 2}, {"Color", 9}, {"Style", 10},
                               {"Width", 11}}}},
    RecordKind{"Ellipse", "Ellipse", {{{"BoundingBox", 1, 4}, {"Color", 5}, {"LineStyle", 6}, {"LineWidth", 7},
                                       {"FillStyle", 8}, {"HatchStyle", 9}}}},
    RecordKind{"Polyline", "Polyline", {{{"PolylineStart", 1, 2}, {"Color", 3}, {"Style", 4}, {"Width", 5},
                                         {"Color", 3}, {"path", 6}}}},
    RecordKind{"Polygon", "Polygon", {{{"PolygonStart", 1, 2}, {"Color", 3}, {"Style", 4}, {"Width", 5},
                                       {"FillStyle", 6}, {"HatchStyle", 7}, {"path", 8}}}},
    RecordKind{"Text", "Text", {{{"BoundingBox", 1, 4}, {"Text", 5}, {"Color", 6},
                                 {"Text Location X-Coordinate", 1}, {"Text Location Y-Coordinate", 2}}}},
    RecordKind{"Bezier", "Bezier", {{{"BezierStart", 1, 2}, {"Color", 3}, {"Style", 4}, {"Width", 5}, {"path", 6}}}},
    RecordKind{"Pin", "Pin", {{{"StartPoint", 1, 2}, {"HotSpot", 3, 2}, {"PinName", 6, 1, placeholder},
                               {"PinNum", 5, 1, placeholder}, {"PinType", 7}}}},
};

constexpr std::array<RecordMember, 8> wire = {
    {{"WireStart", 1, 2}, {"WireEndPos", 3, 2}, {"Color", 5}, {"Style", 6}, {"Width", 7}}};
constexpr std::array<RecordMember, 8> symbol = {{{"Location", 1, 2}, {"Rotation", 3}, {"Mirror", 4}, {"Package", 5}}};

constexpr std::array schematicObjects = {
    RecordKind{"Junction", "Junction", {{{"StartX", 1}, {"StartY", 2}}}, false},
    RecordKind{"BusWire", "BusWire", wire},
    RecordKind{"Wire", "Wire", wire},
    RecordKind{"BusEntry", "BusEntry", {{{"BusEntryStart", 1, 2}, {"BusEntryEndPos", 3, 2}, {"Color", 5}}}},
    RecordKind{"Alias", "Alias", {{{"Location", 1, 2}, {"Text", 3}, {"Color", 4}, {"Font", 6}, {"Rotation", 7}}}},
    RecordKind{"Box", "Box", {{{"UpperLeft", 1, 2}, {"LowerRight", 3, 2}, {"Color", 5}, {"LineStyle", 6},
                               {"LineWidth", 7}, {"FillStyle", 8}, {"HatchStyle", 9}}}},
    RecordKind{"Line", "line", {{{"Start", 1, 2}, {"EndPos", 3, 2}, {"Color", 5}, {"Style", 6}, {"Width", 7}}}},
    RecordKind{"Ellipse", "Ellipse", {{{"Rect", 1, 4}, {"Color", 5}, {"LineStyle", 6}, {"LineWidth", 7},
                                       {"FillStyle", 8}, {"HatchStyle", 9}}}},
    RecordKind{"Part", "Part", symbol},
    RecordKind{"Port", "Port", symbol},
    RecordKind{"Global", "Global", symbol},
    RecordKind{"OffPage", "OffPage", symbol},
    RecordKind{"BitMap", "BitMap", {{{"Location", 1, 2}}}},
    RecordKind{"Polyline", "Polyline", {{{"PolylineStart", 1, 1, pathStart}, {"Color", 2}, {"Style", 3}, {"Width", 4},
                                         {"path", 1}}}},
    RecordKind{"Polygon", "Polygon", {{{"PolygonStart", 1, 1, pathStart}, {"Color", 2}, {"Style", 3}, {"Width", 4},
                                       {"FillStyle", 5}, {"HatchStyle", 6}, {"path", 1}}}},
    RecordKind{"Bezier", "Bezier", {{{"BezierStart", 1, 1, pathStart}, {"Color", 2}, {"Style", 3}, {"Width", 4},
                                     {"path", 1}}}},
    RecordKind{"Arc", "Arc", {{{"Color", 2}, {"Style", 3}, {"Width", 4}, {"path", 1}}}},
    RecordKind{"Text", "Text", {{{"Text", 3}, {"Color", 4}, {"Text Location X-Coordinate", 1},
                                 {"Text Location Y-Coordinate", 2}, {"Font", 6}, {"Rotation", 7}}}},
};
// clang-format on

template <std::size_t count>
const RecordKind* rowOf(const std::array<RecordKind, count>& rows, std::string_view kind) {
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const RecordKind& each) { return each.kind == kind; });
  return row == rows.end() ? nullptr : &*row;
}

}  // namespace

const RecordKind* libraryElementKind(std::string_view kind) {
  return rowOf(libraryElements, kind);
}

const RecordKind* schematicObjectKind(std::string_view kind) {
  return rowOf(schematicObjects, kind);
}

}  // namespace vernoxa
