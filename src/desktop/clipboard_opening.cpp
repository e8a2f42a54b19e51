#include "desktop/clipboard_opening.h"

#include <chrono>

#include "system/clock.h"

namespace vernoxa {

std::unique_ptr<ClipboardAccess> openClipboard(Clipboard& clipboard, Clock& clock) {
  constexpr int pauses = 10;
  constexpr std::chrono::milliseconds pause(20);
  auto opened = clipboard.open();
  for (int done = 0; !opened && done < pauses; ++done) {
    clock.sleep(pause);
    opened = clipboard.open();
  }
  return opened;
}

}  // namespace vernoxa
