// The host scripts' commands that report design checks and packages to the companion.
//
// Each sends its message at once through the host's connection and answers nothing. A failure to send shows only in
// the traffic log.
#pragma once

#include "tcl/command.h"

namespace vernoxa::inline dispatch {
class CompanionSender;
}  // namespace vernoxa::inline dispatch
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::checks {

// One finding of a check; a call without arguments ends the check. Missing arguments read as empty texts.
CommandResult sendRefRepetition(CommandCall& call, const TextConverter& converter, const CompanionSender& sender);
CommandResult sendIllegalChar(CommandCall& call, const TextConverter& converter, const CompanionSender& sender);
CommandResult sendPinNc(CommandCall& call, const TextConverter& converter, const CompanionSender& sender);
CommandResult sendNetlist(CommandCall& call, const TextConverter& converter, const CompanionSender& sender);

// Each takes a list of properties, name and value; shorter elements are skipped.
CommandResult sendDsnPackageInfo(CommandCall& call, const TextConverter& converter, const CompanionSender& sender);
CommandResult sendOlbObjectPackageInfo(CommandCall& call, const TextConverter& converter,
                                       const CompanionSender& sender);
CommandResult sendOlbPackageInfo(CommandCall& call, const TextConverter& converter, const CompanionSender& sender);

}  // namespace vernoxa::checks
