// Windows' processes, and the plug-in's own module.
#pragma once

#include <string>

#include "core/system.h"

namespace vernoxa {

class WindowsProcesses final : public Processes {
 public:
  std::vector<Process> running() override;
  int ownId() override;
  std::string currentFolder() override;
  void setCurrentFolder(const std::string& folder) override;
  void start(const std::string& file, const std::string& argument) override;
};

// Full path of this module (code page), found by an address in it, however the host loaded it. At most 99 characters:
// the buffer's size is a limit that the installation keeps to.
std::string modulePath();

// Keeps the module loaded until the process ends: a thread runs in it that nothing ends.
void pinModule();

}  // namespace vernoxa
