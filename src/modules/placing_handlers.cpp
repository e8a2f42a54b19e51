#include "modules/placing_handlers.h"

#include "dispatch/script_values.h"
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

}  // namespace

Outcome selectModule(const Request& request, ScriptHost& host, const TextConverter& converter) {
  host.evaluate(Script("getSelectPart ").quoted(scriptValue(request, converter, "Page")));
  return Outcome::success();
}

Outcome placeDsnLibPartModule(const Request& request, ScriptHost& host, const TextConverter& converter,
                              PlacementContext& placement, ModulePlacer& placer) {
  if (placement.package.empty()) {
    placement.package = placement.packageName;
  }
  host.evaluate(Script("MenuCommand 57603"));
  if (!isPageActive(host)) {
    return noActivePage();
  }
  // Before the host is told anything: it may run its event loop and have the part placed at once.
  placement.placeState = 1;
  host.evaluate(Script("UnSelectAll"));
  Script viewBox("SetLibViewBox [list ");
  viewBox.bare(scriptValue(request, converter, "ViewBoxWidth")).literal(" ");
  host.evaluate(viewBox.bare(scriptValue(request, converter, "ViewBoxHeight")).literal("]"));
  const PlacedLibrary placed = placer.placeLibrary(host, DraggedBox::none);
  host.evaluate(Script("setPlaceMarketFlag 2"));
  Script place("PlaceNew ");
  place.bare(scriptValue(request, converter, "PartName")).literal(" ").braced(placed.newLibrary.utf8());
  host.evaluate(place.literal(" ").bare(scriptValue(request, converter, "PartIndex")));
  return Outcome::success();
}

Outcome placeDsnModule(const Request&, ScriptHost& host, PlacementContext& placement, ModulePlacer& placer) {
  if (!isPageActive(host)) {
    return noActivePage();
  }
  placement.placeState = 0;
  host.evaluate(Script("UnSelectAll"));
  const PlacedLibrary placed = placer.placeLibrary(host, DraggedBox::made);
  host.evaluate(Script("setPlaceMarketFlag 1"));
  Script place("PlaceNew ");
  place.quoted(placed.newLibrary.utf8()).literal(" ViewBox");
  if (const auto box = placed.module.viewBox()) {
    place.literal(" ").braced(box->width + " " + box->height);
  }
  host.evaluate(place);
  return Outcome::success();
}

void stopPlacing(PlacementContext& placement) {
  placement.placeState = 0;
}

}  // namespace vernoxa::modules
