// Where the plug-in is installed, and what its configuration file says.
#pragma once

#include <optional>
#include <string>

#include "system/file_path.h"

namespace vernoxa::inline system {
class Logs;
}  // namespace vernoxa::inline system

namespace vernoxa::plugin {

// All derived from the full path of the plug-in's own module.
struct Directories {
  FilePath pluginFolder;   // the module's own folder; the crash log lives below it
  FilePath baseDirectory;  // the module path without its last two components
  FilePath logDirectory;   // traffic log
  FilePath configurationFile;
};

Directories directoriesOf(const FilePath& modulePath);

// Of "\Config\App.txt", a JSON object.
struct Configuration {
  std::optional<std::string> language;  // "AlgMenuLang" when it is a string, the empty one too
  bool startCompanion;                  // "StartWithCadence" is exactly the string "1"
};

// `nullopt` if the text is not valid JSON, or beyond the bounds of what is parsed.
std::optional<Configuration> parseConfiguration(const std::string& text, const Logs& logs);

}  // namespace vernoxa::plugin
