// The host scripts' commands for the user's mouse, keyboard, clipboard and choices.
#pragma once

#include "tcl/command.h"

namespace vernoxa {

class Clipboard;
class ClipboardPicture;
class Clock;
class Desktop;
class Logs;
class MessagePaths;
class TextConverter;
class UserMessages;
struct PreviewPicture;

// Lets the user pick one of the candidates, a text with ";" between them, shown sorted by their bytes. Answers the one
// picked as it was given, empty when none was. Needs a second argument, which it does not read. Ends well also after
// an exception, which a message box or the crash log reports.
CommandResult selectJumpPart(CommandCall& call, Desktop& desktop, UserMessages& messages, const TextConverter& text,
                             const Logs& logs);

// Saves the drawing on the clipboard as the preview picture and answers its path, empty when there is none.
CommandResult getClipBoardPic(CommandCall& call, const ClipboardPicture& picture, const MessagePaths& paths,
                              PreviewPicture& preview);

// Answers the cursor's position on the screen, "x y".
CommandResult getMousePosition(CommandCall& call, Desktop& desktop);

// Puts a text on the clipboard; fails as a Tcl error when another program holds it.
CommandResult writeToClipboard(CommandCall& call, Clipboard& clipboard, Clock& clock, const TextConverter& text);

// Presses Enter a moment later, when the dialog that the caller is about to open has appeared.
CommandResult pressEnter(CommandCall& call, Desktop& desktop, Clock& clock);

// Presses Escape, which ends the host's placement mode.
CommandResult afterPlace(CommandCall& call, Desktop& desktop);

}  // namespace vernoxa
