// The two functions that the host's Tcl finds by their names.
#include <tcl.h>

#include <memory>
#include <utility>

#include "link/link_thread.h"
#include "plugin/plug_in.h"
#include "plugin/run.h"
#include "plugin/start_up.h"
#include "plugin/world.h"
#include "system/log.h"
#include "system/system_windows.h"

namespace vernoxa::plugin {
namespace {

void startLinkThread(std::shared_ptr<LinkThreadParts> thread) {
  // The thread shares the ownership of its session, so a later load does not destroy it.
  startDetachedThread([thread = std::move(thread)] { runOnLinkThread<link::runLinkThread>(*thread); });
}

// Lives until the process ends: the link thread runs in it, and nothing ends that thread.
PlugIn& processPlugIn() {
  static PlugIn* const plugIn = [] {
    World world = realWorld();
    const FilePath path = modulePath();
    return new PlugIn{world, path, crashLogsOf(world, directoriesOf(path).pluginFolder), nullptr, startLinkThread};
  }();
  return *plugIn;
}

}  // namespace
}  // namespace vernoxa::plugin

extern "C" {

int Vernoxa_Init(Tcl_Interp* interp) {
  try {
    vernoxa::pinModule();
    vernoxa::plugin::PlugIn& plugIn = vernoxa::plugin::processPlugIn();
    if (Tcl_InitStubs(interp, "8.6", 0) == nullptr) {
      plugIn.crashLogs.reportCrash("Vernoxa_Init");  // nothing of Tcl can be called
      return TCL_OK;
    }
    vernoxa::plugin::startUp(interp, plugIn);
  } catch (...) {
    return TCL_OK;  // no memory for the plug-in itself, and so none for a report
  }
  return TCL_OK;
}

int Vernoxa_Unload() {
  return 0;
}

}  // extern "C"
