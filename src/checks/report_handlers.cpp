#include "checks/report_handlers.h"

#include "dispatch/script_values.h"
#include "system/log.h"
#include "tcl/script_host.h"
#include "text/text_converter.h"

namespace vernoxa::checks {
namespace {

void logScript(const Script& script, const TextConverter& converter, LogWriter& log) {
  log.writeLine(converter.utf8ToAnsi(script.text()));
}

Script withPath(Start procedure, const Request& request, const TextConverter& converter) {
  return Script(procedure).literal(" ").quoted(projectPath(request, converter));
}

Outcome evaluate(const Script& script, ScriptHost& host) {
  host.evaluate(script);
  return Outcome::silent();
}

Outcome evaluateLogged(const Script& script, ScriptHost& host, const TextConverter& converter, LogWriter& log) {
  logScript(script, converter, log);
  return evaluate(script, host);
}

}  // namespace

Outcome getOlbObjectPackageInfo(const Request& request, ScriptHost& host, const TextConverter& converter,
                                LogWriter& log) {
  const std::string name = scriptValue(request, converter, "ObjName");
  const Script start = withPath("GetOlbObjectPackage", request, converter);
  const Script joined = Script(start).bare(name);
  logScript(joined, converter, log);
  host.evaluateJoined(joined, Script(start).literal(" ").bare(name));
  return Outcome::silent();
}

Outcome getDsnAllPackageInfo(const Request& request, ScriptHost& host, const TextConverter& converter, LogWriter& log) {
  return evaluateLogged(withPath("GetAllPackage", request, converter), host, converter, log);
}

Outcome getOlbAllPackageInfo(const Request& request, ScriptHost& host, const TextConverter& converter, LogWriter& log) {
  return evaluateLogged(withPath("GetOlbAllPackage", request, converter), host, converter, log);
}

Outcome dsnCheck(const Request& request, ScriptHost& host, const TextConverter& converter) {
  return evaluate(withPath("RunCheck", request, converter), host);
}

Outcome dsnCheckActiveProj(const Request& request, ScriptHost& host, const TextConverter& converter) {
  return evaluate(withPath("RunCheckActiveProj", request, converter), host);
}

}  // namespace vernoxa::checks
