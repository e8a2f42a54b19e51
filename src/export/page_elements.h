// The objects of a schematic page as drawing elements.
#pragma once

#include "export/element_form.h"
#include "export/record.h"

namespace vernoxa {

// Draws one object. Kinds that pages do not show ("Alias", "BusEntry", "BezierPart", "BitMap", "Property") and unknown
// kinds draw nothing.
void drawPageRecord(const Record& record, ElementSink& sink);

}  // namespace vernoxa
