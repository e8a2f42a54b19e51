#include "modules/placement_commands.h"

#include "modules/library_files.h"
#include "modules/placement.h"
#include "modules/placement_context.h"
#include "modules/placement_scripts.h"
#include "tcl/script_host.h"
#include "text/code_page.h"

namespace vernoxa {

CommandResult placeMarketPart(CommandCall& call, ModulePlacer& placer) {
  placer.placeModule(call.host);
  return {};
}

CommandResult placePartProperty(CommandCall& call, const PlacementContext& placement, const TextConverter& text) {
  const std::string package = text.scriptValue(placement.package);
  call.host.evaluate(cataloguePartScript("SetProperty", package, placement, text));
  return {};
}

CommandResult getOlbPath(CommandCall&, const LibraryFiles& libraries) {
  return {libraries.temporaryPath().utf8()};
}

CommandResult getNewOlbPath(CommandCall&, const LibraryFiles& libraries) {
  return {libraries.newPath().utf8()};
}

}  // namespace vernoxa
