#include "core/directories.h"

#include "core/text.h"

namespace vernoxa {

Directories directoriesOf(const std::string& modulePath) {
  Directories directories;
  directories.pluginFolder = withoutLastComponent(modulePath);
  directories.baseDirectory = withoutLastComponent(directories.pluginFolder);
  directories.logDirectory = directories.baseDirectory + "\\Script\\Log";
  directories.configurationFile = directories.baseDirectory + "\\Config\\App.txt";
  return directories;
}

}  // namespace vernoxa
