// The tables of requests: what the companion asks through `packetParser`, and what the link thread asks through
// `packetParserForPthread`.
#pragma once

#include <span>

#include "dispatch/dispatcher.h"

namespace vernoxa::plugin {

std::span<const HandlerRow> companionHandlers();
std::span<const HandlerRow> threadHandlers();

// The two endpoints with these tables.
const Endpoint& companionEndpoint();
const Endpoint& linkEndpoint();

}  // namespace vernoxa::plugin
