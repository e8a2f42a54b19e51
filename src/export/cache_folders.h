// The folders below the base directory in which drawings are left for the companion. Paths in the code page.
#pragma once

#include <string>

namespace vernoxa {

class Clock;
class Files;

// Each makes the folder, and "\Cache" above it, where missing, and gives its path. A folder that cannot be made shows
// when its files cannot be.
std::string makeOutputFolder(Files& files, const std::string& baseDirectory);   // "\Cache\Output"
std::string makeLibraryFolder(Files& files, const std::string& baseDirectory);  // "\Cache\Library"

// Makes "\Cache\Output" anew without what it held, and without "\Cache" above it. What a link in it leads to is left
// alone.
void renewOutputFolder(Files& files, Clock& clock, const std::string& baseDirectory);

}  // namespace vernoxa
