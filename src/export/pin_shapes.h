// The eight shapes of a pin. A pin's connection point is at 0,0 and the pin runs along x.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/json.h"
#include "export/element.h"

namespace vernoxa {

struct PinShape {
  std::string_view name;
  const char* lineStart;  // x in a drawing
  const char* lineEnd;    // x
  int padLineStart;       // x in a pad stack
  int padLineEnd;         // x
  bool dot;               // a bubble of radius 3 before the line
  bool clock;             // a wedge of two strokes inside the symbol
};

// In the order in which documents define them.
const std::array<PinShape, 8>& pinShapes();

// Draws the shape: dot, line, wedge. The colour as "#" and six digits.
void drawPinShape(const PinShape& shape, std::string_view colour, ElementSink& sink);

// The shape as an entry of a graphic library's "padstacks".
Json padStack(const PinShape& shape);

// "#" and the name of the shape that the host's keywords describe; empty for a pin of no length, which is not drawn.
std::string pinReference(std::string_view keywords);

}  // namespace vernoxa
