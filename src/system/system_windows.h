// Creates the Windows implementations of this room's interfaces (their headers describe them), and what else only the
// Windows files need.
#pragma once

#include <functional>
#include <memory>

#include "system/clock.h"
#include "system/code_page.h"
#include "system/files.h"
#include "system/registry.h"
#include "system/sockets.h"
#include "system/system.h"

namespace vernoxa::inline system {

std::unique_ptr<Clock> windowsClock();
std::unique_ptr<CodePage> windowsCodePage();
std::unique_ptr<Files> windowsFiles();  // by wide calls
std::unique_ptr<GuidSource> windowsGuids();
std::unique_ptr<LockSource> windowsLocks();
std::unique_ptr<Processes> windowsProcesses();
std::unique_ptr<Registry> windowsRegistry();
std::unique_ptr<Sockets> windowsSockets();  // Windows Sockets 2.2
std::unique_ptr<StandardOutput> windowsOutput();

// Full path of this module, found by an address in it, however the host loaded it. Cut off after 99 bytes of the code
// page: installations stay below that.
FilePath modulePath();

// Keeps the module loaded until the process ends, because nothing ends the link thread, which runs in it.
void pinModule();

// Runs the body on a new thread that nobody waits for; drops it if no thread can be started. An exception ends the
// thread and is not reported: it must not reach the system's code.
void startDetachedThread(std::function<void()> body);

}  // namespace vernoxa::inline system
