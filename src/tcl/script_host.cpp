#include "tcl/script_host.h"

namespace vernoxa {

Evaluation ScriptHost::evaluateJoined(const Script& joined, const Script& separated) {
  Evaluation first = evaluate(joined);
  return first.ok ? first : evaluate(separated);
}

bool ScriptHost::isOldHost() {
  const Evaluation version = evaluate(Script("GetProductVersion"));
  return version.text == "16.3" || version.text == "16.5";
}

}  // namespace vernoxa
