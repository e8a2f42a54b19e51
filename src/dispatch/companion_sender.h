// Sends a message to the companion through the host's own connection.
#pragma once

#include <string_view>

#include "tcl/script_host.h"

namespace vernoxa {

struct Services;

// Has the host's `sendPacketGlobalHandle` send a message (code page bytes). `ok` is false when that procedure ended in
// an error, whose text is given then, or when the message could not be encoded, which a message box has told; what it
// answers otherwise is the host scripts' own affair.
Evaluation sendToCompanion(ScriptHost& host, const Services& services, std::string_view message);

}  // namespace vernoxa
