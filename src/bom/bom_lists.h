// The bill of materials of a design, made by the host and read from its three lists. A line of it is six fields
// between ";", as the host's scripts give it.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "text/json.h"

namespace vernoxa {

class ScriptHost;
class TextConverter;
class UserMessages;

constexpr std::array<const char*, 6> bomFieldNames = {"PartNumber", "Value",        "PartRef",
                                                      "PartName",   "PCBFootprint", "PinNumber"};

// Empty fields count. A text with fewer than six fields gives nothing; further fields are left out.
std::vector<std::string> bomFields(std::string_view text);

// An object with the six members in their order.
Json bomLine(const std::vector<std::string>& fields);

// Has the host make the bill. UTF-8 texts; the path keeps its backslashes as Tcl reads them between quotes, the keys
// are property names. True when Tcl's status was TCL_OK.
bool generateBOMForPath(ScriptHost& host, const std::string& path, const std::string& partNumberKey,
                        const std::string& partNameKey);

// An object with the arrays "Stick", "NotStick" and "NotPartNumber". A procedure that ends in an error has an empty
// list. What is no list, an element that is too short and an exception show "BOM读取出错" once and end the reading;
// what was gathered stays.
Json readBomLists(ScriptHost& host, const TextConverter& text, UserMessages& messages);

}  // namespace vernoxa
