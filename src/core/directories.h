// The folders of the installation, all derived from the full path of the plug-in's own module (code page).
#pragma once

#include <string>

namespace vernoxa {

struct Directories {
  std::string pluginFolder;   // the module's own folder; the crash log lives below it
  std::string baseDirectory;  // the module path without its last two components
  std::string logDirectory;   // traffic log
  std::string configurationFile;
};

Directories directoriesOf(const std::string& modulePath);

}  // namespace vernoxa
