#include "export/pin_shapes.h"

#include <initializer_list>

namespace vernoxa {
namespace {

// A short clock pin's line begins at 6 in a drawing, as if it had a dot, but not in a pad stack: readers of both know
// it so.
constexpr std::array<PinShape, 8> shapes = {{
    {"PackagePinLongClockDot", "6", "30", 6, 30, true, true},
    {"PackagePinLong", "0", "30", 0, 30, false, false},
    {"PackagePinLongClock", "0", "30", 0, 30, false, true},
    {"PackagePinLongDot", "6", "30", 6, 30, true, false},
    {"PackagePinShortClockDot", "6", "10", 6, 10, true, true},
    {"PackagePinShort", "0", "10", 0, 10, false, false},
    {"PackagePinShortClock", "6", "10", 0, 10, false, true},
    {"PackagePinShortDot", "6", "10", 6, 10, true, false},
}};

struct Stroke {
  std::string_view x1;
  std::string_view y1;
  std::string_view x2;
  std::string_view y2;
};

void drawStroke(const Stroke& stroke, std::string_view colour, ElementSink& sink) {
  Element element("line");
  element.attribute("x1", stroke.x1)
      .attribute("y1", stroke.y1)
      .attribute("x2", stroke.x2)
      .attribute("y2", stroke.y2)
      .attribute("style", "stroke:", colour, ";stroke-width:1;fill:none");
  sink.add(element);
}

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

void drawPinShape(const PinShape& shape, std::string_view colour, ElementSink& sink) {
  if (shape.dot) {
    Element element("circle");
    element.attribute("cx", "3").attribute("cy", "0").attribute("r", "3").attribute("style", "stroke:", colour,
                                                                                    ";stroke-width:1;fill:none");
    sink.add(element);
  }
  drawStroke({shape.lineStart, "0", shape.lineEnd, "0"}, colour, sink);
  if (shape.clock) {
    drawStroke({"-3", "0", "0", "3"}, colour, sink);
    drawStroke({"-3", "0", "0", "-3"}, colour, sink);
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
  stack.add("name", shape.name);
  return stack;
}

std::string pinReference(std::string_view keywords) {
  const auto has = [keywords](std::string_view word) { return keywords.find(word) != std::string_view::npos; };
  if (has("ZERO")) {
    return {};
  }
  return std::string("#PackagePin") + (has("SHORT") ? "Short" : "Long") + (has("CLOCK") ? "Clock" : "") +
         (has("DOT") ? "Dot" : "");
}

}  // namespace vernoxa
