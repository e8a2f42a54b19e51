// The commands that belong to no topic: starting the companion, identifiers, messages to the user.
#pragma once

#include "plugin/installation.h"
#include "tcl/command.h"

namespace vernoxa::inline system {
class Files;
class GuidSource;
class Processes;
class UserMessages;
}  // namespace vernoxa::inline system

namespace vernoxa::plugin {

// Starts the companion.
CommandResult execTool(CommandCall& call, Processes& processes, Files& files, const Directories& directories);
// A new GUID text.
CommandResult getGenerateGuid(CommandCall& call, GuidSource& guids);
// Tells the user to select a part first.
CommandResult outputWarming(CommandCall& call, UserMessages& messages);

}  // namespace vernoxa::plugin
