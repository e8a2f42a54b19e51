// The library files of a placement: their names, and which of them may be removed.
#pragma once

#include <string>

#include "core/state.h"

namespace vernoxa {

struct Services;

// Paths in the code page with "/" between folders: the folder of the module file, then the base name drawn for the
// placement.
std::string temporaryLibraryPath(const PlacementContext& placement);
std::string newLibraryPath(const PlacementContext& placement);
// The host's own backup of the temporary library.
std::string libraryBackupPath(const PlacementContext& placement);

// Draws the two base names anew: numbers under which the module's folder holds neither a library nor its lock or
// backup, so that no library of the user's is written into. False, with a line in the traffic log, when none is found.
bool drawLibraryNames(Services& services);

// The library without parts that every temporary one starts from: the installation's, else the one below the host's
// program folder; empty when neither exists.
std::string emptyLibraryPath(const Services& services);

// Makes a library as a copy of another and notes it. False when it could not be made; a file that was there stays.
bool makeLibrary(Services& services, const std::string& from, const std::string& to);

// Notes that this process made the library or backup at that path, and so may remove it.
void noteMadeLibrary(Services& services, const std::string& path);

// Removes a file that a placement leaves behind, when it exists. A file of the user's own stays and is logged: a
// design, a project, or a library or backup that this process did not make, however the path spells it.
void removePlacementFile(Services& services, const std::string& path);

}  // namespace vernoxa
