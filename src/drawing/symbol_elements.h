// The graphics of a library symbol as drawing elements.
#pragma once

#include "drawing/element_form.h"
#include "drawing/record.h"

namespace vernoxa {

// Draws one graphic. "BitMap" and unknown kinds draw nothing.
void drawSymbolRecord(const Record& record, ElementSink& sink);

}  // namespace vernoxa
