// The host's scripts send these results as messages of their own, so there is no reply here.
#include "dispatch/script_values.h"
#include "dispatch/services.h"
#include "plugin/companion_handlers.h"
#include "system/log.h"
#include "tcl/script.h"
#include "tcl/script_host.h"
#include "text/code_page.h"

namespace vernoxa {
namespace {

void logScript(HandlerContext& context, const Script& script) {
  context.log.writeLine(context.services.text.utf8ToAnsi(script.text()));
}

Outcome evaluateWithPath(Literal procedure, const Request& request, HandlerContext& context, bool logged) {
  const Script script = Script(procedure).literal(" ").quoted(projectPath(request, context));
  if (logged) {
    logScript(context, script);
  }
  context.host.evaluate(script);
  return {handled, std::nullopt};
}

}  // namespace

Outcome getOlbObjectPackageInfo(const Request& request, HandlerContext& context) {
  const std::string name = scriptValue(request, context, "ObjName");
  const Script start = Script("GetOlbObjectPackage ").quoted(projectPath(request, context));
  const Script joined = Script(start).bare(name);
  logScript(context, joined);
  context.host.evaluateJoined(joined, Script(start).literal(" ").bare(name));
  return {handled, std::nullopt};
}

Outcome getDsnAllPackageInfo(const Request& request, HandlerContext& context) {
  return evaluateWithPath("GetAllPackage", request, context, true);
}

Outcome getOlbAllPackageInfo(const Request& request, HandlerContext& context) {
  return evaluateWithPath("GetOlbAllPackage", request, context, true);
}

Outcome dsnCheck(const Request& request, HandlerContext& context) {
  return evaluateWithPath("RunCheck", request, context, false);
}

Outcome dsnCheckActiveProj(const Request& request, HandlerContext& context) {
  return evaluateWithPath("RunCheckActiveProj", request, context, false);
}

}  // namespace vernoxa
