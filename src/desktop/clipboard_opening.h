// Opening the clipboard that other programs use too.
#pragma once

#include <memory>

#include "system/clipboard.h"

namespace vernoxa {

class Clock;

// Waits a moment, a fifth of a second at most, for a program that holds it, as those do that watch it for changes.
// Nothing when it is held for longer.
std::unique_ptr<ClipboardAccess> openClipboard(Clipboard& clipboard, Clock& clock);

}  // namespace vernoxa
