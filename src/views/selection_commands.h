// The host scripts' command that lets the user choose which part to jump to.
#pragma once

#include "tcl/command.h"

namespace vernoxa::inline system {
class Desktop;
class Logs;
class UserMessages;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::views {

// Lets the user pick one of the candidates, a text with ";" between them, shown sorted by their bytes. Answers the one
// picked as it was given, empty if none was. Needs a second argument, which it does not read. Ends without a Tcl error
// also after an exception, which a message box or the crash log reports.
CommandResult selectJumpPart(CommandCall& call, Desktop& desktop, UserMessages& messages,
                             const TextConverter& converter, const Logs& logs);

}  // namespace vernoxa::views
