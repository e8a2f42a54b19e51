// Files that are whole or not there: nobody reads half a one, and a full disk costs no former one.
#pragma once

#include <functional>

#include "system/file_path.h"

namespace vernoxa::inline system {

class Files;
class OutputFile;
class Processes;

// What to do when the system does not let a file be replaced, as while a reader has it open: to write into it where it
// is, or to leave it as it was.
enum class WhenHeld { writeInPlace, leave };

// Writes the content, false when not all of it could be; called again when the file is written in place.
using WriteContent = std::function<bool(OutputFile&)>;

// Writes a file beside its place, then gives it its name in one step. False when that failed, which leaves nothing
// behind. One thread at a time may write below a folder.
bool writeWholeFile(Files& files, Processes& processes, const FilePath& path, WhenHeld whenHeld,
                    const WriteContent& write);

}  // namespace vernoxa::inline system
