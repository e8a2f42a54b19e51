// Paths of our own on their way to the companion.
#pragma once

#include <string>

#include "system/file_path.h"

namespace vernoxa {

struct Services;

// A path as a message names it, for a reader that opens it through the code page. Where the code page lacks a character
// it is the short name, which the file must be there for, and without one the true name in UTF-8, which readers tell by
// its three-byte sequences. A path that has none is not told: the empty text, and a line in the traffic log.
std::string pathText(const Services& services, const FilePath& path);

}  // namespace vernoxa
