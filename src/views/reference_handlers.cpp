#include "views/view_handlers.h"

#include "dispatch/script_values.h"
#include "tcl/script_host.h"
#include "text/text.h"

namespace vernoxa::views {

Outcome adjustRefAndValue(const Request&, ScriptHost& host, const TextConverter& converter) {
  return doneOrFailure(host, converter, Script("ReplaceRefAndValue"));
}

Outcome renameRef(const Request& request, ScriptHost& host, const TextConverter& converter) {
  return doneOrFailure(host, converter, Script("RenameRef ").number(request.number("Type")));
}

Outcome jumpToDsn(const Request& request, ScriptHost& host, const TextConverter& converter) {
  // A page name travels with its backslashes written out, as in the names of page files.
  const std::string page = replaceAll(scriptValue(request, converter, "PageName"), "[;fanxiegan;]", "\\\\");
  Script script("JumpToDsn ");
  script.quoted(doubleBackslashes(projectPath(request, converter))).literal(" ");
  script.quoted(scriptValue(request, converter, "Sch")).literal(" ").quoted(page);
  script.literal(" [list ").bare(scriptValue(request, converter, "PagePos")).literal("]");
  host.evaluate(script);
  return Outcome::success();
}

Outcome jumpToPartRef(const Request& request, ScriptHost& host, const TextConverter& converter) {
  if (!request.data.member("PartRef").text()) {
    return Outcome::failed("No PartRef");
  }
  if (!request.data.member("ProjectPath").text()) {
    return Outcome::refused();
  }
  Script script("gotoLocation ");
  script.quoted(projectPath(request, converter)).literal(" ").bare(scriptValue(request, converter, "PartRef"));
  return host.evaluate(script).ok ? Outcome::success() : Outcome::failed("exec error");
}

}  // namespace vernoxa::views
