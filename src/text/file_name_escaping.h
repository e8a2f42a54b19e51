// File names that are made of names of a design, which may hold what Windows forbids in a file name.
#pragma once

#include <string>
#include <string_view>

namespace vernoxa::inline text {

// Replaces each of \ / : * ? " < > | by its marker, for example ":" by "[;maohao;]"; the companion replaces the markers
// back. UTF-8.
std::string escapedFileName(std::string_view name);

// A name that stands for a file wherever it is opened: one that Windows keeps for a device, as CON or "lpt1.json", gets
// "_" in front, and ":", behind which another name for the same file would begin, becomes "-". UTF-8.
std::string plainFileName(std::string_view name);

}  // namespace vernoxa::inline text
