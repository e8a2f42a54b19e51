#include "plugin/real_world_windows.h"

#include "desktop/clipboard_windows.h"
#include "desktop/desktop_windows.h"
#include "desktop/pictures_windows.h"
#include "desktop/user_messages_windows.h"
#include "system/files_windows.h"
#include "system/process_windows.h"
#include "system/random.h"
#include "system/registry_windows.h"
#include "system/sockets_windows.h"
#include "system/system_windows.h"

namespace vernoxa {
namespace {

struct RealWorld {
  WindowsClock clock;
  WindowsCodePage codePage;
  WindowsFiles files;
  WindowsGuidSource guids;
  WindowsLockSource locks;
  WindowsProcesses processes;
  TimeSeededNumbers random;
  WindowsSockets sockets;
  WindowsStandardOutput output;
  WindowsUserMessages messages;
  WindowsRegistry registry;
  WindowsClipboard clipboard;
  WindowsPictures pictures;
  WindowsDesktop desktop;
};

}  // namespace

World realWorld() {
  // Never destroyed: the link thread goes on while the process's statics are being taken down.
  static RealWorld& real = *new RealWorld;
  return {real.clock,   real.codePage, real.files,    real.guids,    real.locks,     real.processes, real.random,
          real.sockets, real.output,   real.messages, real.registry, real.clipboard, real.pictures,  real.desktop};
}

}  // namespace vernoxa
