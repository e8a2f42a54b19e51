// The host scripts' commands that tell the companion of fitted and not fitted parts.
#pragma once

#include "tcl/command.h"

namespace vernoxa::inline dispatch {
class CompanionSender;
}  // namespace vernoxa::inline dispatch
namespace vernoxa::inline system {
class UserMessages;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::bom {

// Each takes a Tcl list of BOM lines and answers the packet text of "AddToBom" or "RemoveFromBom"; without an argument
// it answers nothing. A line that is too short shows a message box and is left out.
CommandResult sendAddToBom(CommandCall& call, const TextConverter& converter, UserMessages& messages,
                           const CompanionSender& sender);
CommandResult sendRemoveFromBom(CommandCall& call, const TextConverter& converter, UserMessages& messages,
                                const CompanionSender& sender);

// Sends "TryUpdateBom" at once.
CommandResult tryUpdateBom(CommandCall& call, const CompanionSender& sender);

// Always "1": the host's script asks before it offers the choice.
CommandResult selectAddOrRemoveFromBom(CommandCall& call);

}  // namespace vernoxa::bom
