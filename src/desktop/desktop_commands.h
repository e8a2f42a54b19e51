// The host scripts' commands for the user's mouse, keyboard, clipboard and choices.
#pragma once

#include "tcl/command.h"

namespace vernoxa {

struct Services;

// Lets the user pick one of the candidates, a text with ";" between them, shown sorted by their bytes. Answers the one
// picked as it was given, empty when none was. Needs a second argument, which it does not read. Ends well also after
// an exception, which a message box or the crash log reports.
CommandResult selectJumpPart(CommandCall& call, Services& services);

// Saves the drawing on the clipboard as the preview picture and answers its path, empty when there is none.
CommandResult getClipBoardPic(CommandCall& call, Services& services);

// Answers the cursor's position on the screen, "x y".
CommandResult getMousePosition(CommandCall& call, Services& services);

// Puts a text on the clipboard; fails as a Tcl error when another program holds it.
CommandResult writeToClipboard(CommandCall& call, Services& services);

// Presses Enter a moment later, when the dialog that the caller is about to open has appeared.
CommandResult pressEnter(CommandCall& call, Services& services);

// Presses Escape, which ends the host's placement mode.
CommandResult afterPlace(CommandCall& call, Services& services);

}  // namespace vernoxa
