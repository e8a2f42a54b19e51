// Which designs the host has open, and which of them the companion knows of.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "commands/handler.h"

namespace vernoxa {

// Asks the host for its open paths, keeps the designs among them in the state and gives them, in the host's order and
// encoding.
std::vector<std::string> scanOpenDesigns(HandlerContext& context);

// A design is told once the companion has its "Open" message, or the host does not know its pin count; forgotten once
// the companion has its "Close" message. Names may be in either encoding.
void rememberTold(Services& services, std::string_view name);
void forgetTold(Services& services, std::string_view name);

// The first open design not yet told; nothing when all are.
std::optional<std::string> firstUntold(const Services& services);

// Told designs that are no longer open, as the host gave them, joined by ";".
std::string closedDesigns(const Services& services);

}  // namespace vernoxa
