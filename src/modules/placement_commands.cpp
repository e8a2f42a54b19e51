#include "modules/placement_commands.h"

#include "dispatch/services.h"
#include "dispatch/state.h"
#include "modules/library_files.h"
#include "modules/placement.h"
#include "modules/placement_scripts.h"
#include "tcl/script_host.h"
#include "text/code_page.h"

namespace vernoxa {

CommandResult placeMarketPart(CommandCall& call, Services& services) {
  placeModule(call.host, services);
  return {};
}

CommandResult placePartProperty(CommandCall& call, Services& services) {
  const PlacementContext& placement = services.state.placement;
  const std::string package = services.text.scriptValue(placement.package);
  call.host.evaluate(cataloguePartScript("SetProperty", package, placement, services.text));
  return {};
}

CommandResult getOlbPath(CommandCall&, Services& services) {
  return {temporaryLibraryPath(services).utf8()};
}

CommandResult getNewOlbPath(CommandCall&, Services& services) {
  return {newLibraryPath(services).utf8()};
}

}  // namespace vernoxa
