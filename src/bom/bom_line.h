// One line of a bill of materials: six fields between ";", as the host's scripts give it.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "text/json.h"

namespace vernoxa {

constexpr std::array<const char*, 6> bomFieldNames = {"PartNumber", "Value",        "PartRef",
                                                      "PartName",   "PCBFootprint", "PinNumber"};

// Empty fields count. A text with fewer than six fields gives nothing; further fields are left out.
std::vector<std::string> bomFields(std::string_view text);

// An object with the six members in their order.
Json bomLine(const std::vector<std::string>& fields);

}  // namespace vernoxa
