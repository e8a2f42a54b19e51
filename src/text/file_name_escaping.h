// Makes file names from names in a design, which may hold characters that Windows forbids in a file name.
#pragma once

#include <string>
#include <string_view>

namespace vernoxa::inline text {

// Replaces each of \ / : * ? " < > | by its marker, for example ":" by "[;maohao;]"; the companion replaces the markers
// back. UTF-8.
std::string escapedFileName(std::string_view name);

// Makes sure that a name opens an ordinary file: a name that Windows reserves for a device, such as CON or "lpt1.json",
// gets "_" in front, and ":", which would open an alternate data stream, becomes "-". UTF-8.
std::string plainFileName(std::string_view name);

}  // namespace vernoxa::inline text
