// The handlers of the companion's requests to offer a module and to place one.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa::inline dispatch {
class StoredMembers;
}  // namespace vernoxa::inline dispatch
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::modules {

class LibraryFiles;
class ModulePlacer;
struct PlacementContext;

// Has the host offer the selected parts of a page, by the command `sendUploadMarket`.
Outcome selectModule(const Request& request, ScriptHost& host, const TextConverter& converter);

// Has the user drag one catalogue part, or a whole shared module, onto the active page; `placeMarketPart` places it
// when the user drops it. Without an active page nothing is placed.
Outcome placeDsnLibPartModule(const Request& request, const StoredMembers& stored, ScriptHost& host,
                              const TextConverter& converter, PlacementContext& placement, LibraryFiles& libraries,
                              ModulePlacer& placer);
Outcome placeDsnModule(const StoredMembers& stored, ScriptHost& host, PlacementContext& placement,
                       LibraryFiles& libraries, ModulePlacer& placer);
// For a request to place something that was refused: nothing is being placed then.
void stopPlacing(PlacementContext& placement);

}  // namespace vernoxa::modules
