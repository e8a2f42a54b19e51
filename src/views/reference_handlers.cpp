#include "dispatch/script_values.h"
#include "plugin/companion_handlers.h"
#include "tcl/script.h"
#include "tcl/script_host.h"
#include "text/text.h"

namespace vernoxa {

Outcome adjustRefAndValue(const Request&, HandlerContext& context) {
  return doneOrFailure(context, Script("ReplaceRefAndValue"));
}

Outcome renameRef(const Request& request, HandlerContext& context) {
  return doneOrFailure(context, Script("RenameRef ").number(request.number("Type")));
}

Outcome jumpToDsn(const Request& request, HandlerContext& context) {
  // A page name travels with its backslashes written out, as in the names of page files.
  const std::string page = replaceAll(scriptValue(request, context, "PageName"), "[;fanxiegan;]", "\\\\");
  Script script("JumpToDsn ");
  script.quoted(doubleBackslashes(projectPath(request, context))).literal(" ");
  script.quoted(scriptValue(request, context, "Sch")).literal(" ").quoted(page);
  script.literal(" [list ").bare(scriptValue(request, context, "PagePos")).literal("]");
  context.host.evaluate(script);
  return Outcome::success();
}

Outcome jumpToPartRef(const Request& request, HandlerContext& context) {
  if (!request.data.member("PartRef").text()) {
    return Outcome::failure("No PartRef", stoppedEarly);
  }
  if (!request.data.member("ProjectPath").text()) {
    return {stoppedEarly, std::nullopt};
  }
  Script script("gotoLocation ");
  script.quoted(projectPath(request, context)).literal(" ").bare(scriptValue(request, context, "PartRef"));
  return context.host.evaluate(script).ok ? Outcome::success() : Outcome::failure("exec error");
}

}  // namespace vernoxa
