#include "core/script_host.h"

namespace vernoxa {

Evaluation ScriptHost::evaluateJoined(const std::string& joined, const std::string& separated) {
  Evaluation first = evaluate(joined);
  return first.ok ? first : evaluate(separated);
}

bool ScriptHost::isOldHost() {
  const std::string version = evaluate("GetProductVersion").text;
  return version == "16.3" || version == "16.5";
}

}  // namespace vernoxa
