#include "checks/report_handlers.h"

#include "dispatch/script_values.h"
#include "system/log.h"
#include "tcl/script_host.h"
#include "text/code_page.h"

namespace vernoxa::checks {
namespace {

void logScript(const Script& script, const TextConverter& text, LogWriter& log) {
  log.writeLine(text.utf8ToAnsi(script.text()));
}

Script withPath(Start procedure, const Request& request, const TextConverter& text) {
  return Script(procedure).literal(" ").quoted(projectPath(request, text));
}

Outcome evaluate(const Script& script, ScriptHost& host) {
  host.evaluate(script);
  return Outcome::silent();
}

Outcome evaluateLogged(const Script& script, ScriptHost& host, const TextConverter& text, LogWriter& log) {
  logScript(script, text, log);
  return evaluate(script, host);
}

}  // namespace

Outcome getOlbObjectPackageInfo(const Request& request, ScriptHost& host, const TextConverter& text, LogWriter& log) {
  const std::string name = scriptValue(request, text, "ObjName");
  const Script start = withPath("GetOlbObjectPackage", request, text);
  const Script joined = Script(start).bare(name);
  logScript(joined, text, log);
  host.evaluateJoined(joined, Script(start).literal(" ").bare(name));
  return Outcome::silent();
}

Outcome getDsnAllPackageInfo(const Request& request, ScriptHost& host, const TextConverter& text, LogWriter& log) {
  return evaluateLogged(withPath("GetAllPackage", request, text), host, text, log);
}

Outcome getOlbAllPackageInfo(const Request& request, ScriptHost& host, const TextConverter& text, LogWriter& log) {
  return evaluateLogged(withPath("GetOlbAllPackage", request, text), host, text, log);
}

Outcome dsnCheck(const Request& request, ScriptHost& host, const TextConverter& text) {
  return evaluate(withPath("RunCheck", request, text), host);
}

Outcome dsnCheckActiveProj(const Request& request, ScriptHost& host, const TextConverter& text) {
  return evaluate(withPath("RunCheckActiveProj", request, text), host);
}

}  // namespace vernoxa::checks
