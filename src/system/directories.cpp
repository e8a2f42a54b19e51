#include "system/directories.h"

namespace vernoxa {

Directories directoriesOf(const FilePath& modulePath) {
  Directories directories;
  directories.pluginFolder = modulePath.folder();
  directories.baseDirectory = directories.pluginFolder.folder();
  directories.logDirectory = directories.baseDirectory / "Script" / "Log";
  directories.configurationFile = directories.baseDirectory / "Config" / "App.txt";
  return directories;
}

}  // namespace vernoxa
