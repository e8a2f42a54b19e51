#include "plugin/command_table.h"

#include <tcl.h>

#include <memory>

#include "plugin/plug_in.h"
#include "tcl/tcl_script_host.h"

namespace vernoxa::plugin {
namespace {

CommandResult callRow(const CommandRow& row, PlugIn& plugIn, const Arguments& arguments, Tcl_Interp* interp) {
  // Keeps the session during the call: a script may load the plug-in again.
  const std::shared_ptr<Session> session = plugIn.session;
  if (!session) {
    return {row.beforeState};
  }
  TclScriptHost host(interp);
  CommandCall call{arguments, host};
  return row.run(call, *session);
}

}  // namespace

int guarded(const CommandRow& row, Tcl_Interp* interp, int count, Tcl_Obj* const* objects) noexcept {
  PlugIn* const plugIn = activePlugIn();
  if (plugIn == nullptr) {
    return TCL_OK;
  }
  try {
    CommandResult result = callRow(row, *plugIn, Arguments(count, objects), interp);
    if (result.text.empty()) {
      Tcl_ResetResult(interp);  // in half the time, for the many records of a drawing
    } else {
      Tcl_SetResult(interp, result.text.data(), TCL_VOLATILE);
    }
    return result.status;
  } catch (...) {
    plugIn->crashLogs.reportCrash(row.crashName != nullptr ? row.crashName : row.name);
    Tcl_ResetResult(interp);
    return commandFailed;
  }
}

}  // namespace vernoxa::plugin
