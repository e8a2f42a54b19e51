// The folders of the installation, all derived from the full path of the plug-in's own module.
#pragma once

#include "system/file_path.h"

namespace vernoxa {

struct Directories {
  FilePath pluginFolder;   // the module's own folder; the crash log lives below it
  FilePath baseDirectory;  // the module path without its last two components
  FilePath logDirectory;   // traffic log
  FilePath configurationFile;
};

Directories directoriesOf(const FilePath& modulePath);

}  // namespace vernoxa
