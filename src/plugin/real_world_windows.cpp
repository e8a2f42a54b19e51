#include "plugin/world.h"

#include "desktop/desktop_windows.h"
#include "system/random.h"
#include "system/system_windows.h"

namespace vernoxa::plugin {
namespace {

struct RealWorld {
  std::unique_ptr<Clock> clock = windowsClock();
  std::unique_ptr<CodePage> codePage = windowsCodePage();
  std::unique_ptr<Files> files = windowsFiles();
  std::unique_ptr<GuidSource> guids = windowsGuids();
  std::unique_ptr<LockSource> locks = windowsLocks();
  std::unique_ptr<Processes> processes = windowsProcesses();
  TimeSeededNumbers random;
  std::unique_ptr<Sockets> sockets = windowsSockets();
  std::unique_ptr<StandardOutput> output = windowsOutput();
  std::unique_ptr<UserMessages> messages = desktop::windowsUserMessages();
  std::unique_ptr<Registry> registry = windowsRegistry();
  std::unique_ptr<Clipboard> clipboard = desktop::windowsClipboard();
  std::unique_ptr<Pictures> pictures = desktop::windowsPictures();
  std::unique_ptr<Desktop> desktop = desktop::windowsDesktop();
};

}  // namespace

World realWorld() {
  // Never destroyed: the link thread goes on while the process's statics are being taken down.
  static RealWorld& real = *new RealWorld;
  return {*real.clock,     *real.codePage,  *real.files,    *real.guids,  *real.locks,
          *real.processes, real.random,     *real.sockets,  *real.output, *real.messages,
          *real.registry,  *real.clipboard, *real.pictures, *real.desktop};
}

}  // namespace vernoxa::plugin
