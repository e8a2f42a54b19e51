#include "drawing/pin_shapes.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace vernoxa {
namespace {

// A short clock pin's line begins at 6 in a drawing, as if it had a dot, but not in a pad stack: readers of both know
// it so.
constexpr std::array<PinShape, 8> shapes = {{
    {"#PackagePinLongClockDot", "6", "30", 6, 30, true, true},
    {"#PackagePinLong", "0", "30", 0, 30, false, false},
    {"#PackagePinLongClock", "0", "30", 0, 30, false, true},
    {"#PackagePinLongDot", "6", "30", 6, 30, true, false},
    {"#PackagePinShortClockDot", "6", "10", 6, 10, true, true},
    {"#PackagePinShort", "0", "10", 0, 10, false, false},
    {"#PackagePinShortClock", "6", "10", 0, 10, false, true},
    {"#PackagePinShortDot", "6", "10", 6, 10, true, false},
}};

ElementForm red(const char* tag, std::vector<Attribute> attributes) {
  attributes.push_back({"style", {"stroke:#FF0000;stroke-width:1;fill:none"}});
  return {symbolElementDepth, tag, nullptr, std::move(attributes)};
}

std::string_view lineStart(const Record& record) {
  return record[0];
}

std::string_view lineEnd(const Record& record) {
  return record[1];
}

ElementForm redLine(ValuePiece x1, ValuePiece x2, const char* y2) {
  return red("line", {{"x1", {x1}}, {"y1", {"0"}}, {"x2", {x2}}, {"y2", {y2}}});
}

struct PinForms {
  ElementForm dot = red("circle", {{"cx", {"3"}}, {"cy", {"0"}}, {"r", {"3"}}});
  ElementForm line = redLine(lineStart, lineEnd, "0");
  ElementForm wedgeDown = redLine("-3", "0", "3");
  ElementForm wedgeUp = redLine("-3", "0", "-3");
};

Json numbers(std::initializer_list<int> values) {
  Json array = Json::array();
  for (const int value : values) {
    array.append(Json::number(value));
  }
  return array;
}

Json pad(std::string_view type, Json segments) {
  Json entry = Json::object();
  entry.add("fill", Json::boolean(false));
  entry.add("type", type);
  entry.add("xy", numbers({0, 0}));
  entry.add("segs", std::move(segments));
  return entry;
}

}  // namespace

const std::array<PinShape, 8>& pinShapes() {
  return shapes;
}

void drawPinShape(const PinShape& shape, ElementSink& sink) {
  static const PinForms forms;
  Record ends;
  ends.set(0, shape.lineStart);
  ends.set(1, shape.lineEnd);
  if (shape.dot) {
    sink.add(forms.dot, ends);
  }
  sink.add(forms.line, ends);
  if (shape.clock) {
    sink.add(forms.wedgeDown, ends);
    sink.add(forms.wedgeUp, ends);
  }
}

Json padStack(const PinShape& shape) {
  Json pads = Json::array();
  if (shape.dot) {
    Json arc = Json::array();
    arc.append(numbers({0, -3, 6, 6, 0, 360}));  // left, top, width, height, start angle, sweep
    pads.append(pad("Arc", std::move(arc)));
  }
  Json strokes = Json::array();
  strokes.append(numbers({shape.padLineStart, 0, shape.padLineEnd, 0}));
  if (shape.clock) {
    strokes.append(numbers({-3, 0, 0, 3}));
    strokes.append(numbers({-3, 0, 0, -3}));
  }
  pads.append(pad("line", std::move(strokes)));
  Json stack = Json::object();
  stack.add("pads", std::move(pads));
  stack.add("name", shape.name());
  return stack;
}

std::string_view pinReference(std::string_view keywords) {
  const auto has = [keywords](std::string_view word) { return keywords.find(word) != std::string_view::npos; };
  if (has("ZERO")) {
    return {};
  }
  const std::string_view end = has("SHORT") ? "10" : "30";
  const auto shape = std::find_if(shapes.begin(), shapes.end(), [&](const PinShape& each) {
    return each.lineEnd == end && each.clock == has("CLOCK") && each.dot == has("DOT");
  });
  return shape->reference;  // there is one for each combination
}

}  // namespace vernoxa
