// The host scripts' commands around a placement.
#pragma once

#include "tcl/command.h"

namespace vernoxa {

struct Services;

// Places what the state names. Answers nothing.
CommandResult placeMarketPart(CommandCall& call, Services& services);

// Gives the placed part the properties of the state.
CommandResult placePartProperty(CommandCall& call, Services& services);

// The temporary and the new library of the latest placement; UTF-8, "/" between folders.
CommandResult getOlbPath(CommandCall& call, Services& services);
CommandResult getNewOlbPath(CommandCall& call, Services& services);

}  // namespace vernoxa
