// What a load of the plug-in does, in its order.
#pragma once

#include "tcl/script.h"

struct Tcl_Interp;

namespace vernoxa::plugin {

struct PlugIn;

// The script that goes to the host at load: its actions, its menu and its local server. 683 bytes in the code page.
Script startUpScript();

// Provides the package, registers the commands, runs the start-up script, then makes the session and starts the link
// thread. An exception ends the start-up where it happened and goes to the crash log as "Vernoxa_Init"; the host sees
// success.
void startUp(Tcl_Interp* interp, PlugIn& plugIn) noexcept;

}  // namespace vernoxa::plugin
