// What makes the real parts of the operating system in this room, and what only Windows needs beside them. The parts
// are described where their interfaces are.
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

// Full path of this module, found by an address in it, however the host loaded it. Cut after 99 bytes of the code page:
// a limit that the installation keeps to.
FilePath modulePath();

// Keeps the module loaded until the process ends: a thread runs in it that nothing ends.
void pinModule();

// Runs the body on a new thread that nobody waits for; drops it when there is no thread. An exception of the body ends
// its thread in silence: it must not reach the system's code.
void startDetachedThread(std::function<void()> body);

}  // namespace vernoxa::inline system
