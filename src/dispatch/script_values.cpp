#include "dispatch/script_values.h"

#include "tcl/script_host.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::inline dispatch {

std::string scriptValue(const Request& request, const TextConverter& converter, std::string_view member) {
  return converter.scriptValue(request.text(member));
}

std::string projectPath(const Request& request, const TextConverter& converter) {
  return scriptValue(request, converter, "ProjectPath");
}

std::string doubledOnce(const std::string& path) {
  constexpr std::size_t networkStart = 2;
  return path.find("\\\\", networkStart) != std::string::npos ? path : doubleBackslashes(path);
}

Outcome doneOrFailure(ScriptHost& host, const TextConverter& converter, const Script& script) {
  const Evaluation answer = host.evaluate(script);
  return answer.text == "1" ? Outcome::success() : Outcome::failed(converter.messageText(answer.text));
}

}  // namespace vernoxa::inline dispatch
