// The host scripts' commands for the user's mouse, keyboard and clipboard.
#pragma once

#include "tcl/command.h"

namespace vernoxa::inline system {
class Clipboard;
class Clock;
class Desktop;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class MessagePaths;
class TextConverter;
struct PreviewPicture;
}  // namespace vernoxa::inline text

namespace vernoxa::desktop {

class ClipboardPicture;

// Saves the drawing on the clipboard as the preview picture and answers its path, empty when there is none.
CommandResult getClipBoardPic(CommandCall& call, const ClipboardPicture& picture, const MessagePaths& paths,
                              PreviewPicture& preview);

// Answers the cursor's position on the screen, "x y".
CommandResult getMousePosition(CommandCall& call, Desktop& desktop);

// Puts a text on the clipboard; fails as a Tcl error when another program holds it.
CommandResult writeToClipboard(CommandCall& call, Clipboard& clipboard, Clock& clock, const TextConverter& converter);

// Presses Enter a moment later, when the dialog that the caller is about to open has appeared.
CommandResult pressEnter(CommandCall& call, Desktop& desktop, Clock& clock);

// Presses Escape, which ends the host's placement mode.
CommandResult afterPlace(CommandCall& call, Desktop& desktop);

}  // namespace vernoxa::desktop
