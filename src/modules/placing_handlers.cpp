#include "modules/placing_handlers.h"

#include "dispatch/script_values.h"
#include "dispatch/services.h"
#include "modules/placement.h"
#include "tcl/script.h"
#include "tcl/script_host.h"
#include "text/code_page.h"

namespace vernoxa {
namespace {

bool isPageActive(HandlerContext& context) {
  return context.host.evaluate(Script("IsSchematicViewActive")).text == "1";
}

Outcome noActivePage() {
  return Outcome::failure("请先打开要放置的原理图page页!");
}

}  // namespace

Outcome placeDsnLibPartModule(const Request& request, HandlerContext& context) {
  PlacementContext& placement = context.services.state.placement;
  if (placement.package.empty()) {
    placement.package = placement.packageName;
  }
  context.host.evaluate(Script("MenuCommand 57603"));
  if (!isPageActive(context)) {
    return noActivePage();
  }
  // Before the host is told anything: it may run its event loop and have the part placed at once.
  placement.placeState = 1;
  context.host.evaluate(Script("UnSelectAll"));
  Script viewBox("SetLibViewBox [list ");
  viewBox.bare(scriptValue(request, context, "ViewBoxWidth")).literal(" ");
  context.host.evaluate(viewBox.bare(scriptValue(request, context, "ViewBoxHeight")).literal("]"));
  const PlacedLibrary placed = placeLibrary(context.host, context.services, DraggedBox::none);
  context.host.evaluate(Script("setPlaceMarketFlag 2"));
  Script place("PlaceNew ");
  place.bare(scriptValue(request, context, "PartName")).literal(" ").braced(placed.newLibrary.utf8());
  context.host.evaluate(place.literal(" ").bare(scriptValue(request, context, "PartIndex")));
  return Outcome::success();
}

Outcome placeDsnModule(const Request&, HandlerContext& context) {
  if (!isPageActive(context)) {
    return noActivePage();
  }
  context.services.state.placement.placeState = 0;
  context.host.evaluate(Script("UnSelectAll"));
  const PlacedLibrary placed = placeLibrary(context.host, context.services, DraggedBox::made);
  context.host.evaluate(Script("setPlaceMarketFlag 1"));
  Script place("PlaceNew ");
  place.quoted(placed.newLibrary.utf8()).literal(" ViewBox");
  if (const auto box = placed.module.viewBox()) {
    place.literal(" ").braced(box->width + " " + box->height);
  }
  context.host.evaluate(place);
  return Outcome::success();
}

}  // namespace vernoxa
