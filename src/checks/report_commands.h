// The host scripts' commands that report design checks and packages to the companion.
//
// Each sends its message at once through the host's connection and answers nothing. A failure to send shows only in
// the traffic log.
#pragma once

#include "tcl/command.h"

namespace vernoxa {

struct Services;

// One finding of a check; a call without arguments ends the check. Missing arguments read as empty texts.
CommandResult sendRefRepetition(CommandCall& call, Services& services);
CommandResult sendIllegalChar(CommandCall& call, Services& services);
CommandResult sendPinNc(CommandCall& call, Services& services);
CommandResult sendNetlist(CommandCall& call, Services& services);

// Each takes a list of properties, name and value; shorter elements are skipped.
CommandResult sendDsnPackageInfo(CommandCall& call, Services& services);
CommandResult sendOlbObjectPackageInfo(CommandCall& call, Services& services);
CommandResult sendOlbPackageInfo(CommandCall& call, Services& services);

}  // namespace vernoxa
