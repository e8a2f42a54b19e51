#include "tcl/script_host.h"

namespace vernoxa::inline tcl {

Evaluation ScriptHost::evaluateJoined(const Script& joined, const Script& separated) {
  Evaluation first = evaluate(joined);
  return first.ok ? first : evaluate(separated);
}

Evaluation ScriptHost::evaluateJoined(Start procedure, std::string_view argument, Literal rest) {
  const Script separated = Script(procedure).literal(" ").quoted(argument).literal(rest);
  const bool oneWord = argument.find_first_of(" \t\v\f") == std::string_view::npos;
  return oneWord ? evaluateJoined(Script(procedure).quoted(argument).literal(rest), separated) : evaluate(separated);
}

bool ScriptHost::isOldHost() {
  const Evaluation version = evaluate(Script("GetProductVersion"));
  return version.text == "16.3" || version.text == "16.5";
}

}  // namespace vernoxa::inline tcl
