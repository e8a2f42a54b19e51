#include "modules/placing_handlers.h"

#include "dispatch/script_values.h"
#include "dispatch/services.h"
#include "modules/placement.h"
#include "tcl/script_host.h"
#include "tcl/script_text.h"
#include "text/code_page.h"

namespace vernoxa {
namespace {

bool isPageActive(HandlerContext& context) {
  return context.host.evaluate("IsSchematicViewActive").text == "1";
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
  context.host.evaluate("MenuCommand 57603");
  if (!isPageActive(context)) {
    return noActivePage();
  }
  // Before the host is told anything: it may run its event loop and have the part placed at once.
  placement.placeState = 1;
  context.host.evaluate("UnSelectAll");
  ScriptText viewBox("SetLibViewBox [list ");
  viewBox.bare(scriptValue(request, context, "ViewBoxWidth")).literal(" ");
  context.host.evaluate(viewBox.bare(scriptValue(request, context, "ViewBoxHeight")).literal("]").text());
  const PlacedLibrary placed = placeLibrary(context.host, context.services, DraggedBox::none);
  context.host.evaluate("setPlaceMarketFlag 2");
  ScriptText place("PlaceNew ");
  place.bare(scriptValue(request, context, "PartName")).literal(" ").braced(placed.newLibrary.utf8());
  context.host.evaluate(place.literal(" ").bare(scriptValue(request, context, "PartIndex")).text());
  return Outcome::success();
}

Outcome placeDsnModule(const Request&, HandlerContext& context) {
  if (!isPageActive(context)) {
    return noActivePage();
  }
  context.services.state.placement.placeState = 0;
  context.host.evaluate("UnSelectAll");
  const PlacedLibrary placed = placeLibrary(context.host, context.services, DraggedBox::made);
  context.host.evaluate("setPlaceMarketFlag 1");
  ScriptText place("PlaceNew ");
  place.quoted(placed.newLibrary.utf8()).literal(" ViewBox");
  if (const auto box = placed.module.viewBox()) {
    place.literal(" ").braced(box->width + " " + box->height);
  }
  context.host.evaluate(place.text());
  return Outcome::success();
}

}  // namespace vernoxa
