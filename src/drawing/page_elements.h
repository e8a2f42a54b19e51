// The objects of a schematic page as drawing elements.
#pragma once

#include "drawing/element_form.h"
#include "drawing/record.h"

namespace vernoxa {

// Draws one object. Kinds that pages do not show ("Alias", "BusEntry", "BezierPart", "BitMap", "Property") and unknown
// kinds draw nothing.
void drawPageRecord(const Record& record, ElementSink& sink);

}  // namespace vernoxa
