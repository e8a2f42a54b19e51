// The folders below the base directory in which drawings are left for the companion.
#pragma once

#include "system/file_path.h"

namespace vernoxa {

class Clock;
class Files;

// Each makes the folder, and "\Cache" above it, where missing, and gives its path. A folder that cannot be made shows
// when its files cannot be.
FilePath makeOutputFolder(Files& files, const FilePath& baseDirectory);   // "\Cache\Output"
FilePath makeLibraryFolder(Files& files, const FilePath& baseDirectory);  // "\Cache\Library"

// Makes "\Cache\Output" anew without what it held, and without "\Cache" above it. What a link in it leads to is left
// alone.
void renewOutputFolder(Files& files, Clock& clock, const FilePath& baseDirectory);

}  // namespace vernoxa
