#include "commands/placing_handlers.h"

#include "commands/script_values.h"
#include "core/code_page.h"
#include "core/script_host.h"
#include "core/script_text.h"
#include "core/services.h"
#include "sharing/placement.h"

namespace vernoxa {
namespace {

// What is being placed, taken back unless the placement succeeds.
class PlaceState {
 public:
  PlaceState(PlacementContext& placement, int state) : placement_(placement) { placement_.placeState = state; }
  PlaceState(const PlaceState&) = delete;
  PlaceState& operator=(const PlaceState&) = delete;
  ~PlaceState() {
    if (!kept_) {
      placement_.placeState = 0;
    }
  }
  void keep() { kept_ = true; }

 private:
  PlacementContext& placement_;
  bool kept_ = false;
};

bool isPageActive(HandlerContext& context) {
  return context.host.evaluate("IsSchematicViewActive").text == "1";
}

Outcome noActivePage() {
  return Outcome::failure("请先打开要放置的原理图page页!");
}

}  // namespace

Outcome placeDsnLibPartModule(const Request& request, HandlerContext& context) {
  PlacementContext& placement = context.services.state.placement;
  PlaceState state(placement, 1);
  if (placement.package.empty()) {
    placement.package = placement.packageName;
  }
  context.host.evaluate("MenuCommand 57603");
  if (!isPageActive(context)) {
    return noActivePage();
  }
  context.host.evaluate("UnSelectAll");
  ScriptText viewBox("SetLibViewBox [list ");
  viewBox.bare(scriptValue(request, context, "ViewBoxWidth")).literal(" ");
  context.host.evaluate(viewBox.bare(scriptValue(request, context, "ViewBoxHeight")).literal("]").text());
  const PlacedLibrary placed = placeLibrary(context.host, context.services, DraggedBox::none);
  context.host.evaluate("setPlaceMarketFlag 2");
  ScriptText place("PlaceNew ");
  place.bare(scriptValue(request, context, "PartName")).literal(" ").braced(placed.newLibrary.utf8());
  context.host.evaluate(place.literal(" ").bare(scriptValue(request, context, "PartIndex")).text());
  state.keep();
  return Outcome::success();
}

Outcome placeDsnModule(const Request&, HandlerContext& context) {
  PlaceState state(context.services.state.placement, 0);
  if (!isPageActive(context)) {
    return noActivePage();
  }
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
