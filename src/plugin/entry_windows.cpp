// The two functions that the host's Tcl finds by their names.
#include <tcl.h>

#include <memory>

#include "core/handle_windows.h"
#include "core/log.h"
#include "core/process_windows.h"
#include "core/world.h"
#include "link/link_thread.h"
#include "plugin/plug_in.h"
#include "plugin/real_world_windows.h"
#include "plugin/start_up.h"

namespace vernoxa {
namespace {

DWORD WINAPI linkThreadBody(LPVOID parameter) {
  // The thread's own share of its session: a later load must not take it away.
  const std::unique_ptr<std::shared_ptr<Session>> session(static_cast<std::shared_ptr<Session>*>(parameter));
  LinkThread((*session)->services(), (*session)->client()).run();
  return 0;
}

void startLinkThread(std::shared_ptr<Session> session) {
  auto share = std::make_unique<std::shared_ptr<Session>>(std::move(session));
  const KernelHandle thread(CreateThread(nullptr, 0, linkThreadBody, share.get(), 0, nullptr));
  if (thread) {
    static_cast<void>(share.release());  // the thread's now
  }
}

// Lives until the process ends: the link thread runs in it, and nothing ends that thread.
PlugIn& processPlugIn() {
  static PlugIn* const plugIn = [] {
    World world = realWorld();
    const std::string path = modulePath();
    return new PlugIn{world, path, Logs(world.clock, world.files, directoriesOf(path).pluginFolder), nullptr,
                      startLinkThread};
  }();
  return *plugIn;
}

}  // namespace
}  // namespace vernoxa

extern "C" {

int Vernoxa_Init(Tcl_Interp* interp) {
  try {
    vernoxa::pinModule();
    vernoxa::PlugIn& plugIn = vernoxa::processPlugIn();
    if (Tcl_InitStubs(interp, "8.6", 0) == nullptr) {
      plugIn.crashLogs.reportCrash("Vernoxa_Init");  // nothing of Tcl can be called
      return TCL_OK;
    }
    vernoxa::startUp(interp, plugIn);
  } catch (...) {
    return TCL_OK;  // no memory for the plug-in itself, and so none for a report
  }
  return TCL_OK;
}

int Vernoxa_Unload() {
  return 0;
}

}  // extern "C"
