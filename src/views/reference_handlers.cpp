#include "views/view_handlers.h"

#include "dispatch/script_values.h"
#include "tcl/script_host.h"
#include "text/text.h"

namespace vernoxa::views {

Outcome adjustRefAndValue(const Request&, ScriptHost& host, const TextConverter& text) {
  return doneOrFailure(host, text, Script("ReplaceRefAndValue"));
}

Outcome renameRef(const Request& request, ScriptHost& host, const TextConverter& text) {
  return doneOrFailure(host, text, Script("RenameRef ").number(request.number("Type")));
}

Outcome jumpToDsn(const Request& request, ScriptHost& host, const TextConverter& text) {
  // A page name travels with its backslashes written out, as in the names of page files.
  const std::string page = replaceAll(scriptValue(request, text, "PageName"), "[;fanxiegan;]", "\\\\");
  Script script("JumpToDsn ");
  script.quoted(doubleBackslashes(projectPath(request, text))).literal(" ");
  script.quoted(scriptValue(request, text, "Sch")).literal(" ").quoted(page);
  script.literal(" [list ").bare(scriptValue(request, text, "PagePos")).literal("]");
  host.evaluate(script);
  return Outcome::success();
}

Outcome jumpToPartRef(const Request& request, ScriptHost& host, const TextConverter& text) {
  if (!request.data.member("PartRef").text()) {
    return Outcome::failed("No PartRef");
  }
  if (!request.data.member("ProjectPath").text()) {
    return Outcome::refused();
  }
  Script script("gotoLocation ");
  script.quoted(projectPath(request, text)).literal(" ").bare(scriptValue(request, text, "PartRef"));
  return host.evaluate(script).ok ? Outcome::success() : Outcome::failed("exec error");
}

}  // namespace vernoxa::views
