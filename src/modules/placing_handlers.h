// The handlers of the companion's two placing commands.
#pragma once

#include "dispatch/handler.h"

namespace vernoxa {

// Has the user drag one catalogue part, or a whole shared module, onto the active page; `placeMarketPart` places it
// when the user drops it. Without an active page nothing is placed.
Outcome placeDsnLibPartModule(const Request&, HandlerContext&);
Outcome placeDsnModule(const Request&, HandlerContext&);

}  // namespace vernoxa
