#include "core/script_host.h"

namespace vernoxa {

Evaluation ScriptHost::evaluateJoined(const std::string& joined, const std::string& separated) {
  Evaluation first = evaluate(joined);
  return first.ok ? first : evaluate(separated);
}

}  // namespace vernoxa
