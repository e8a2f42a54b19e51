#include "tcl/script_host.h"

namespace vernoxa {

Evaluation ScriptHost::evaluateJoined(const std::string& joined, const std::string& separated) {
  Evaluation first = evaluate(joined);
  return first.ok ? first : evaluate(separated);
}

bool ScriptHost::isOldHost() {
  const Evaluation version = evaluate("GetProductVersion");
  return version.text == "16.3" || version.text == "16.5";
}

}  // namespace vernoxa
