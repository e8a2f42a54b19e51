#include "plugin/command_table.h"

#include <tcl.h>

#include <memory>
#include <utility>

#include "plugin/plug_in.h"
#include "tcl/tcl_script_host.h"

namespace vernoxa {
namespace {

CommandResult runRow(const CommandRow& row, PlugIn& plugIn, const Arguments& arguments, Tcl_Interp* interp) {
  // Ours for the length of the call: a script may load the plug-in again.
  const std::shared_ptr<Session> session = plugIn.session;
  if (!session) {
    return {row.beforeState};
  }
  TclScriptHost host(interp);
  CommandCall call{arguments, host};
  return row.run(call, *session);
}

// No exception crosses into Tcl: it ends here as a line in the crash log and the status that the host's scripts know.
int guarded(const CommandRow& row, Tcl_Interp* interp, int count, Tcl_Obj* const* objects) noexcept {
  PlugIn* const plugIn = activePlugIn();
  if (plugIn == nullptr) {
    return TCL_OK;
  }
  try {
    CommandResult result = runRow(row, *plugIn, Arguments(count, objects), interp);
    Tcl_SetResult(interp, result.text.data(), TCL_VOLATILE);
    return result.status;
  } catch (...) {
    plugIn->crashLogs.reportCrash(row.crashName != nullptr ? row.crashName : row.name);
    Tcl_ResetResult(interp);
    return commandFailed;
  }
}

// The commands carry no client data, so each row has an entry of its own.
template <std::size_t index>
int entry(ClientData, Tcl_Interp* interp, int count, Tcl_Obj* const objects[]) {
  return guarded(commandTable()[index], interp, count, objects);
}

template <std::size_t... indexes>
void registerAll(Tcl_Interp* interp, std::index_sequence<indexes...>) {
  (Tcl_CreateObjCommand(interp, commandTable()[indexes].name, entry<indexes>, nullptr, nullptr), ...);
}

}  // namespace

void registerCommands(Tcl_Interp* interp) {
  registerAll(interp, std::make_index_sequence<commandCount>());
}

}  // namespace vernoxa
