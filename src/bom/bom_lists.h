// The bill of materials of a design, which the host makes and gives as three lists. A line has six fields with ";"
// between them.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "dispatch/description.h"
#include "text/json.h"

namespace vernoxa::inline system {
class UserMessages;
}  // namespace vernoxa::inline system
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::bom {

// The fields of a line, under their names in replies and messages.
inline constexpr std::array bomMembers = {
    row::text("PartNumber", "Property that is the part number; empty when the part has none."),
    row::text("Value", "Value property, such as 10k."),
    row::text("PartRef", "Reference designator; a line for several equal parts has them all."),
    row::text("PartName", "Property that is the part name."),
    row::text("PCBFootprint", "Footprint property."),
    row::text("PinNumber", "Number of pins, in decimal digits."),
};

// The six fields of a line; empty fields count, further ones are left out. No fields at all if there are fewer than
// six.
std::vector<std::string> bomFields(std::string_view text);

// An object with the six members in their order.
Json bomLine(const std::vector<std::string>& fields);

// Has the host make the bill. UTF-8 texts; the path keeps its backslashes as Tcl reads them between quotes, the keys
// are property names. True when Tcl's status was TCL_OK.
bool generateBOMForPath(ScriptHost& host, const std::string& path, const std::string& partNumberKey,
                        const std::string& partNameKey);

// An object with the arrays "Stick", "NotStick" and "NotPartNumber". A procedure that ends in an error has an empty
// list. A text that is not a list, an element that is too short and an exception show "BOM读取出错" once and end the
// reading; what was gathered stays.
Json readBomLists(ScriptHost& host, const TextConverter& converter, UserMessages& messages);

}  // namespace vernoxa::bom
