// Registers the commands and stands around each of their calls.
#pragma once

struct Tcl_Interp;

namespace vernoxa {

// Creates every command of the table, in table order, without client data.
void registerCommands(Tcl_Interp* interp);

}  // namespace vernoxa
