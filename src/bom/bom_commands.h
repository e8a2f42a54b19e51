// The host scripts' commands that tell the companion of fitted and not fitted parts.
#pragma once

#include "tcl/command.h"

namespace vernoxa {

struct Services;

// Each takes a Tcl list of BOM lines and answers the packet text of "AddToBom" or "RemoveFromBom"; no answer without
// an argument. A line that is too short shows a message box and is left out.
CommandResult sendAddToBom(CommandCall& call, Services& services);
CommandResult sendRemoveFromBom(CommandCall& call, Services& services);

// Sends "TryUpdateBom" at once.
CommandResult tryUpdateBom(CommandCall& call, Services& services);

// Always "1": the host's script asks before it offers the choice.
CommandResult selectAddOrRemoveFromBom(CommandCall& call, Services& services);

}  // namespace vernoxa
