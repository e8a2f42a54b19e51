// Which designs the host has open, and which of them the companion knows of.
//
// Open and reported designs are compared by their names, as messages bring them, and by the host's bytes where two have
// the same name.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dispatch/handler.h"

namespace vernoxa {

// Asks the host for its open paths, keeps the designs among them in the state and gives them, in the host's order.
const std::vector<KnownDesign>& scanOpenDesigns(HandlerContext& context);

// A design is reported once the companion has its "Open" message, and no longer once it has its "Close" message.
// `name` is that of the message, in the code page already.
void noteReported(Services& services, std::string_view name);
void noteClosed(GlobalState& state, std::string_view name);

// A design whose pins the host cannot count is passed over as if it were reported. `hostPath` is as the host gave it.
void noteWithoutPins(Services& services, std::string_view hostPath);

// The first open design not yet reported, as the host gave it; nullopt if all are.
std::optional<std::string> firstUnreported(const GlobalState& state);

// Reported designs that are no longer open, as the host gave them, joined by ";".
std::string closedDesigns(const GlobalState& state);

}  // namespace vernoxa
