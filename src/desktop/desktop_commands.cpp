#include "desktop/desktop_commands.h"

#include <chrono>
#include <string>

#include "desktop/clipboard_picture.h"
#include "system/clipboard.h"
#include "system/clock.h"
#include "system/desktop.h"
#include "text/message_paths.h"
#include "text/text_converter.h"

namespace vernoxa::desktop {
namespace {

using namespace std::chrono_literals;

constexpr auto beforeKey = 200ms;
constexpr auto keyHeld = 50ms;

}  // namespace

CommandResult getClipBoardPic(CommandCall&, const ClipboardPicture& picture, const MessagePaths& paths,
                              PreviewPicture& preview) {
  const FilePath path = picture.save();
  if (!path.empty()) {
    preview.path = paths.of(path);
  }
  return {path.utf8()};
}

CommandResult getMousePosition(CommandCall&, Desktop& desktop) {
  const ScreenPoint cursor = desktop.cursor();
  return {std::to_string(cursor.x) + " " + std::to_string(cursor.y)};
}

CommandResult writeToClipboard(CommandCall& call, Clipboard& clipboard, Clock& clock, const TextConverter& converter) {
  const std::string content = converter.utf8ToAnsi(call.arguments.text(1));
  const auto opened = openClipboard(clipboard, clock);
  if (!opened) {
    return {{}, commandError};
  }
  opened->replaceByText(content);
  return {};
}

CommandResult pressEnter(CommandCall&, Desktop& desktop, Clock& clock) {
  // Clock and desktop outlive every session.
  desktop.runInBackground([&clock, &desktop] {
    clock.sleep(beforeKey);
    desktop.moveKey(Key::enter, KeyMove::press);
    clock.sleep(keyHeld);
    desktop.moveKey(Key::enter, KeyMove::release);
  });
  return {};
}

CommandResult afterPlace(CommandCall&, Desktop& desktop) {
  desktop.moveKey(Key::escape, KeyMove::press);
  desktop.moveKey(Key::escape, KeyMove::release);
  return {};
}

}  // namespace vernoxa::desktop
