#include "sharing/placement_commands.h"

#include "core/code_page.h"
#include "core/script_host.h"
#include "core/services.h"
#include "core/state.h"
#include "sharing/library_files.h"
#include "sharing/placement.h"
#include "sharing/placement_scripts.h"

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
