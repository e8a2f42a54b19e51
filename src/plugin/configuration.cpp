#include "plugin/configuration.h"

#include "core/json.h"

namespace vernoxa {

std::optional<Configuration> parseConfiguration(const std::string& text) {
  const Json root = Json::parse(text).document;
  if (!root) {
    return std::nullopt;
  }
  Configuration configuration;
  if (const auto language = root.member("AlgMenuLang").text()) {
    configuration.language = std::string(*language);
  }
  configuration.startCompanion = root.member("StartWithCadence").text() == "1";
  return configuration;
}

}  // namespace vernoxa
