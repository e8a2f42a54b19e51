// The plug-in's configuration file, "\Config\App.txt": a JSON object.
#pragma once

#include <optional>
#include <string>

namespace vernoxa {

class Logs;

struct Configuration {
  std::optional<std::string> language;  // "AlgMenuLang" when it is a string, the empty one too
  bool startCompanion = false;          // "StartWithCadence" is exactly the string "1"
};

// Nothing when the text is no JSON, or beyond the bounds of what is parsed.
std::optional<Configuration> parseConfiguration(const std::string& text, const Logs& logs);

}  // namespace vernoxa
