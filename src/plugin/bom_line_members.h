// A line of a bill of materials, as requests are answered with it and as messages of the plug-in hold it.
#pragma once

#include <array>

#include "dispatch/description.h"

namespace vernoxa {

inline constexpr std::array bomLine = {
    row::text("PartNumber", "Property that is the part number; empty when the part has none."),
    row::text("Value", "Value property, such as 10k."),
    row::text("PartRef", "Reference designator; a line for several equal parts has them all."),
    row::text("PartName", "Property that is the part name."),
    row::text("PCBFootprint", "Footprint property."),
    row::text("PinNumber", "Number of pins, in decimal digits."),
};

}  // namespace vernoxa
