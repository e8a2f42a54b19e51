// The commands that stand for themselves.
#pragma once

#include "plugin/installation.h"
#include "tcl/command.h"

namespace vernoxa {

struct Services;

// Starts the companion.
CommandResult execTool(CommandCall& call, Services& services, const Directories& directories);
// A new GUID text.
CommandResult getGenerateGuid(CommandCall& call, Services& services);
// Tells the user to select a part first.
CommandResult outputWarming(CommandCall& call, Services& services);
// Shows the text of an error code, or the code itself when there is none; nothing without an argument. The code
// "MoreThanPage" also removes the new library of the placement that failed.
CommandResult outputError(CommandCall& call, Services& services);

}  // namespace vernoxa
