// Finding and starting the companion.
#pragma once

#include <cstdint>
#include <string>

#include "system/file_path.h"

namespace vernoxa::inline system {
class Files;
class Logs;
class Processes;
}  // namespace vernoxa::inline system

namespace vernoxa::plugin {

// Id of the first running process whose executable name contains the text, with case, cut to 16 bits; 0 when there is
// none. The first entry of the system's list, the idle process, is never looked at. An exception goes to the crash
// log and answers 0.
std::uint16_t processIdFromName(Processes& processes, const Logs& logs, const std::string& text) noexcept;

// Starts "LanTuZS.exe" (or, where that is missing, "lantuzs.exe") of the base directory with "AutoLogin", minimised.
// The current folder is the base directory meanwhile. A failure of the system is not reported.
void launchCompanion(Processes& processes, Files& files, const FilePath& baseDirectory);

}  // namespace vernoxa::plugin
