// The eight shapes of a pin. A pin's connection point is at 0,0 and the pin runs along x.
#pragma once

#include <array>
#include <string_view>

#include "drawing/element_form.h"
#include "text/json.h"

namespace vernoxa {

struct PinShape {
  std::string_view reference;  // "#" and the name
  const char* lineStart;       // x in a drawing
  const char* lineEnd;         // x
  int padLineStart;            // x in a pad stack
  int padLineEnd;              // x
  bool dot;                    // a bubble of radius 3 before the line
  bool clock;                  // a wedge of two strokes inside the symbol

  std::string_view name() const { return reference.substr(1); }
};

// In the order in which documents define them.
const std::array<PinShape, 8>& pinShapes();

// Draws the shape in red: dot, line, wedge.
void drawPinShape(const PinShape& shape, ElementSink& sink);

// The shape as an entry of a graphic library's "padstacks".
Json padStack(const PinShape& shape);

// The reference of the shape that the host's keywords describe; empty for a pin of no length, which is not drawn.
std::string_view pinReference(std::string_view keywords);

}  // namespace vernoxa
