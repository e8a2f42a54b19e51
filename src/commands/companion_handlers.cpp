// What the companion asks of the host.
#include "commands/handler.h"

namespace vernoxa {

std::span<const HandlerRow> companionHandlers() { return {}; }

}  // namespace vernoxa
