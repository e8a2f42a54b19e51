// Windows' processes, and the plug-in's own module.
#pragma once

#include <string>

#include "system/system.h"

namespace vernoxa {

class WindowsProcesses final : public Processes {
 public:
  std::vector<Process> running() override;
  int ownId() override;
  FilePath currentFolder() override;
  void setCurrentFolder(const FilePath& folder) override;
  void start(const std::string& file, const std::string& argument) override;
};

// Full path of this module, found by an address in it, however the host loaded it. Cut after 99 bytes of the code page:
// a limit that the installation keeps to.
FilePath modulePath();

// Keeps the module loaded until the process ends: a thread runs in it that nothing ends.
void pinModule();

}  // namespace vernoxa
