// The commands that belong to no topic: starting the companion, identifiers, messages to the user.
#pragma once

#include "plugin/installation.h"
#include "tcl/command.h"

namespace vernoxa {

class Files;
class GuidSource;
class LibraryFiles;
class Processes;
class TextConverter;
class UserMessages;

// Starts the companion.
CommandResult execTool(CommandCall& call, Processes& processes, Files& files, const Directories& directories);
// A new GUID text.
CommandResult getGenerateGuid(CommandCall& call, GuidSource& guids);
// Tells the user to select a part first.
CommandResult outputWarming(CommandCall& call, UserMessages& messages);
// Shows the text of an error code, or the code itself when there is none; nothing without an argument. The code
// "MoreThanPage" also removes the new library of the placement that failed.
CommandResult outputError(CommandCall& call, UserMessages& messages, const TextConverter& text,
                          LibraryFiles& libraries);

}  // namespace vernoxa
