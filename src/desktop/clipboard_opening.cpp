#include "desktop/clipboard_opening.h"

#include <chrono>

#include "system/clock.h"
#include "system/world.h"

namespace vernoxa {

std::unique_ptr<ClipboardAccess> openClipboard(World& world) {
  constexpr int pauses = 10;
  constexpr std::chrono::milliseconds pause(20);
  auto clipboard = world.clipboard.open();
  for (int done = 0; !clipboard && done < pauses; ++done) {
    world.clock.sleep(pause);
    clipboard = world.clipboard.open();
  }
  return clipboard;
}

}  // namespace vernoxa
