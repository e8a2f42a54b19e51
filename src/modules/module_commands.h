// The host scripts' commands that export a shared module.
#pragma once

#include "tcl/command.h"

namespace vernoxa {

class ModuleDocument;
struct Services;

// Starts a document and makes "\Cache\Share" below the base directory.
CommandResult initMarketFile(CommandCall& call, Services& services, ModuleDocument& document);

// One record each, a Tcl list.
CommandResult addMarketLibList(CommandCall& call, ModuleDocument& document);
CommandResult addMarketPartList(CommandCall& call, ModuleDocument& document);

// Takes name, width, height and one unused argument; writes the document as "\Cache\Share\ModuleLib.json" and answers
// that path in UTF-8, also when nothing could be written.
CommandResult outputMarketFile(CommandCall& call, Services& services, ModuleDocument& document);

}  // namespace vernoxa
