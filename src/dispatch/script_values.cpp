#include "dispatch/script_values.h"

#include "dispatch/services.h"
#include "tcl/script_host.h"
#include "text/code_page.h"
#include "text/text.h"

namespace vernoxa {

std::string scriptValue(const Request& request, HandlerContext& context, std::string_view member) {
  return context.services.text.scriptValue(request.text(member));
}

std::string projectPath(const Request& request, HandlerContext& context) {
  return scriptValue(request, context, "ProjectPath");
}

std::string doubledOnce(const std::string& path) {
  constexpr std::size_t networkStart = 2;
  return path.find("\\\\", networkStart) != std::string::npos ? path : doubleBackslashes(path);
}

std::string replyValue(HandlerContext& context, const std::string& result) {
  return context.services.text.messageText(result);
}

Outcome doneOrFailure(HandlerContext& context, const Script& script) {
  const Evaluation answer = context.host.evaluate(script);
  return answer.text == "1" ? Outcome::success() : Outcome::failure(replyValue(context, answer.text));
}

}  // namespace vernoxa
