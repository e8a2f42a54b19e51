#include "modules/placing_handlers.h"

#include "dispatch/handler.h"
#include "dispatch/script_values.h"
#include "modules/library_files.h"
#include "modules/placement.h"
#include "modules/placement_context.h"
#include "tcl/script_host.h"
#include "text/gbk_literal.h"
#include "text/text_converter.h"

namespace vernoxa::modules {
namespace {

bool isPageActive(ScriptHost& host) {
  return host.evaluate(Script("IsSchematicViewActive")).text == "1";
}

Outcome noActivePage() {
  return Outcome::failed(u8"请先打开要放置的原理图page页!"_gbk);
}

void takePackage(PlacementContext& placement) {
  if (placement.package.empty()) {
    placement.package = placement.packageName;
  }
}

// The host may run its event loop inside every script, and another request or command may set the placement to
// something else meanwhile. Both placing requests set their own again before its library is made, and before the user
// can drop it. What the other one set in the host itself, such as the size of the outline, is the host's to keep.
void askForOnePart(const StoredMembers& stored, PlacementContext& placement) {
  stored.store();
  takePackage(placement);
  placement.placeState = 1;
}

void askForModule(const StoredMembers& stored, PlacementContext& placement) {
  stored.store();
  placement.placeState = 0;
}

}  // namespace

Outcome selectModule(const Request& request, ScriptHost& host, const TextConverter& converter) {
  host.evaluate(Script("getSelectPart ").quoted(scriptValue(request, converter, "Page")));
  return Outcome::success();
}

Outcome placeDsnLibPartModule(const Request& request, const StoredMembers& stored, ScriptHost& host,
                              const TextConverter& converter, PlacementContext& placement, LibraryFiles& libraries,
                              ModulePlacer& placer) {
  takePackage(placement);
  host.evaluate(Script("MenuCommand 57603"));
  if (!isPageActive(host)) {
    return noActivePage();
  }
  // Before the host is told anything: it may run its event loop and have the part placed at once.
  askForOnePart(stored, placement);
  host.evaluate(Script("UnSelectAll"));
  Script viewBox("SetLibViewBox [list ");
  viewBox.bare(scriptValue(request, converter, "ViewBoxWidth")).literal(" ");
  host.evaluate(viewBox.bare(scriptValue(request, converter, "ViewBoxHeight")).literal("]"));
  askForOnePart(stored, placement);
  const PlacedLibrary placed = placer.placeLibrary(host, DraggedBox::none);
  host.evaluate(Script("setPlaceMarketFlag 2"));
  Script place("PlaceNew ");
  place.bare(scriptValue(request, converter, "PartName")).literal(" ").braced(placed.newLibrary.utf8());
  place.literal(" ").bare(scriptValue(request, converter, "PartIndex"));
  askForOnePart(stored, placement);
  libraries.meanAgain(placed.names);
  host.evaluate(place);
  return Outcome::success();
}

Outcome placeDsnModule(const StoredMembers& stored, ScriptHost& host, PlacementContext& placement,
                       LibraryFiles& libraries, ModulePlacer& placer) {
  if (!isPageActive(host)) {
    return noActivePage();
  }
  askForModule(stored, placement);
  host.evaluate(Script("UnSelectAll"));
  askForModule(stored, placement);
  const PlacedLibrary placed = placer.placeLibrary(host, DraggedBox::made);
  host.evaluate(Script("setPlaceMarketFlag 1"));
  Script place("PlaceNew ");
  place.quoted(placed.newLibrary.utf8()).literal(" ViewBox");
  if (const auto box = placed.module.viewBox()) {
    place.literal(" ").braced(box->width + " " + box->height);
  }
  askForModule(stored, placement);
  libraries.meanAgain(placed.names);
  host.evaluate(place);
  return Outcome::success();
}

void stopPlacing(PlacementContext& placement) {
  placement.placeState = 0;
}

}  // namespace vernoxa::modules
