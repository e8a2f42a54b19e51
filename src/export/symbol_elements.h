// The graphics of a library symbol as drawing elements.
#pragma once

#include "export/element_form.h"
#include "export/record.h"

namespace vernoxa {

// Draws one graphic. "BitMap" and unknown kinds draw nothing.
void drawSymbolRecord(const Record& record, ElementSink& sink);

}  // namespace vernoxa
