// Writes files in one step: nobody ever reads half a file, and a full disk does not destroy the former one.
#pragma once

#include <functional>

#include "system/file_path.h"

namespace vernoxa::inline system {

class Files;
class Logs;
class OutputFile;
class Processes;

// What to do when the system does not let a file be replaced, for example while a reader has it open: write into the
// existing file, or leave it as it is.
enum class WhenHeld { writeInPlace, leave };

// Writes the content; false if not all of it could be written. Called a second time if the file is written in place.
using WriteContent = std::function<bool(OutputFile&)>;

// Writes a temporary file in the same folder, then renames it in one step. False on failure, which leaves nothing
// behind. Only one thread at a time may write into a folder.
bool writeWholeFile(Files& files, Processes& processes, const FilePath& path, WhenHeld whenHeld,
                    const WriteContent& write);

// The same; the traffic log tells of a file that was not written.
void writeWholeFile(Files& files, Processes& processes, const FilePath& path, WhenHeld whenHeld,
                    const WriteContent& write, const Logs& logs);

}  // namespace vernoxa::inline system
