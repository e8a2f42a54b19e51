// The host scripts' commands that talk to the companion about shared modules.
#pragma once

#include "tcl/command.h"

namespace vernoxa {

struct Services;

// Hands the exported module over; answers what the host's sender says. Picture and module file are forgotten then.
CommandResult sendUploadMarket(CommandCall& call, Services& services);

// The path of the module file of a resource id, code page, backslashes doubled; kept per id while the file exists.
// Empty without one; the companion's number when it refuses; its whole reply when that names no path.
CommandResult getResPath(CommandCall& call, Services& services);

// The signed-in user's id, or what a placement left in the field that it shares with a part's index.
CommandResult getSelfUserId(CommandCall& call, Services& services);

// Removes the libraries of the last placement and the module file.
CommandResult removeDatFile(CommandCall& call, Services& services);

}  // namespace vernoxa
