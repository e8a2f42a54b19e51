// Finds the executable of the host that loaded the plug-in.
//
// Several versions of the host may be installed side by side; each leaves an uninstall entry in the registry.
#pragma once

#include <string>
#include <vector>

#include "system/file_path.h"

namespace vernoxa::inline system {
class Files;
class HostExecutable;
class Logs;
class Registry;
}  // namespace vernoxa::inline system
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl

namespace vernoxa::designs {

struct Installation {
  FilePath location;  // folder without a "\" at its end
  std::string version;
};

// Products of the host's vendor: first those installed for the machine, then those for the user, in the registry's
// order. An exception ends that half of the list and goes to the crash log as "readOrcadInstallInfo1" or
// "readOrcadInstallInfo".
std::vector<Installation> readOrcadInstallInfo(Registry& registry, const Logs& logs);

// Full path of Capture.exe of that version, or empty. Two versions match if their first four characters do. If the
// executable is not in its usual place, the folders of the installation are searched and the last hit is taken; without
// an installation the search begins at the root of the current drive.
FilePath findHostExecutable(Files& files, const std::string& hostVersion,
                            const std::vector<Installation>& installations);

// Asks the host for its version and keeps the path of its executable; empty when it was not found. An exception goes to
// the crash log as "setOrcadInstallPath".
void setOrcadInstallPath(ScriptHost& host, Registry& registry, Files& files, const Logs& logs,
                         HostExecutable& executable) noexcept;

}  // namespace vernoxa::designs
