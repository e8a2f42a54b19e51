// The library files of a placement: their names, and which of them may be removed.
#pragma once

#include "system/file_path.h"

namespace vernoxa {

struct Services;

// Paths with "/" between folders: the folder of the module file, then the base name drawn for the placement.
FilePath temporaryLibraryPath(const Services& services);
FilePath newLibraryPath(const Services& services);
// The host's own backup of the temporary library.
FilePath libraryBackupPath(const Services& services);

// Draws the two base names anew: numbers under which the module's folder holds neither a library nor its lock or
// backup, so that no library of the user's is written into. False, with a line in the traffic log, when none is found.
bool drawLibraryNames(Services& services);

// Makes a library without parts, which can be written whatever it is copied from: the installation's, else the one
// below the host's program folder. False, with a line in the traffic log that says why, when it could not be made; a
// file that was there stays.
bool makeEmptyLibrary(Services& services, const FilePath& path);

// The same as a copy of another library.
bool copyLibrary(Services& services, const FilePath& from, const FilePath& to);

// Notes that this process made the library or backup at that path, and so may remove it.
void noteMadeLibrary(Services& services, const FilePath& path);

// Removes a file that a placement leaves behind, when it exists. A file of the user's own stays and is logged: a
// design, a project, or a library or backup that this process did not make, however the path spells it.
void removePlacementFile(Services& services, const FilePath& path);

}  // namespace vernoxa
