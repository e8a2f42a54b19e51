#include "plugin/installation.h"

#include "text/outside_json.h"

namespace vernoxa::plugin {

Directories directoriesOf(const FilePath& modulePath) {
  Directories directories;
  directories.pluginFolder = modulePath.folder();
  directories.baseDirectory = directories.pluginFolder.folder();
  directories.logDirectory = directories.baseDirectory / "Script" / "Log";
  directories.configurationFile = directories.baseDirectory / "Config" / "App.txt";
  return directories;
}

std::optional<Configuration> parseConfiguration(const std::string& text, const Logs& logs) {
  const Json root = parseOutsideJson(text, logs);
  if (!root) {
    return std::nullopt;
  }
  return Configuration{std::optional<std::string>(root.member("AlgMenuLang").text()),
                       root.member("StartWithCadence").text() == "1"};
}

}  // namespace vernoxa::plugin
