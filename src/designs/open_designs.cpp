#include "designs/open_designs.h"

#include <algorithm>

#include "designs/file_status.h"
#include "dispatch/services.h"
#include "system/log.h"
#include "tcl/script_host.h"
#include "text/code_page.h"

namespace vernoxa {
namespace {

using Designs = std::vector<KnownDesign>;

auto named(std::string_view name) {
  return [name](const KnownDesign* design) { return design->name == name; };
}

bool holds(const Designs& designs, std::string_view hostPath) {
  return std::any_of(designs.begin(), designs.end(),
                     [&](const KnownDesign& design) { return design.hostPath == hostPath; });
}

// What open and reported designs do not have in common, each in its order.
struct Difference {
  std::vector<const KnownDesign*> unreported;
  std::vector<const KnownDesign*> closed;
};

std::vector<const KnownDesign*> without(const Designs& designs, const Designs& others) {
  std::vector<const KnownDesign*> left;
  for (const KnownDesign& design : designs) {
    const bool nameless = design.name.empty();  // no message can tell of it
    if (!nameless && !holds(others, design.hostPath)) {
      left.push_back(&design);
    }
  }
  return left;
}

Difference differenceOf(const GlobalState& state) {
  Difference left{without(state.openDesigns, state.reportedDesigns), without(state.reportedDesigns, state.openDesigns)};
  // What goes by the same name in messages is the same design, which the host writes in other bytes by now.
  std::erase_if(left.unreported, [&](const KnownDesign* open) {
    const auto same = std::find_if(left.closed.begin(), left.closed.end(), named(open->name));
    if (same == left.closed.end()) {
      return false;
    }
    left.closed.erase(same);
    return true;
  });
  return left;
}

// A path from which the host's name for a design in the code page is made again.
std::string hostPathOf(const Services& services, std::string_view name) {
  const std::string path = services.text.ansiToUtf8(name);
  return designName(services, path) == name ? path : std::string(name);
}

bool isReported(const GlobalState& state, const KnownDesign& design) {
  return std::any_of(state.reportedDesigns.begin(), state.reportedDesigns.end(), [&](const KnownDesign& reported) {
    return reported.hostPath == design.hostPath || reported.name == design.name;
  });
}

// Takes the design among the open ones for reported, or `otherwise` when it is not open.
template <class Wanted>
void note(GlobalState& state, Wanted wanted, const KnownDesign& otherwise) {
  const Difference difference = differenceOf(state);
  const auto open = std::find_if(difference.unreported.begin(), difference.unreported.end(), wanted);
  if (open != difference.unreported.end()) {
    state.reportedDesigns.push_back(**open);
  } else if (!isReported(state, otherwise)) {
    state.reportedDesigns.push_back(otherwise);
  }
}

// The link thread has not received the count that made the design pass for reported.
void forgetUnreceivedCount(GlobalState& state) {
  const std::string lost = state.link.takeAwaitedCount();
  if (!lost.empty()) {
    std::erase_if(state.reportedDesigns, [&](const KnownDesign& design) { return design.hostPath == lost; });
  }
}

}  // namespace

const Designs& scanOpenDesigns(HandlerContext& context) {
  GlobalState& state = context.services.state;
  forgetUnreceivedCount(state);
  context.log.writeLine("1111");
  const std::string paths = context.host.evaluate(Script("InitPath")).text;
  context.log.writeLine("22222222");
  Designs designs;
  for (std::string& path : designsAmong(paths)) {
    std::string name = designName(context.services, path);
    designs.push_back({std::move(path), std::move(name)});
  }
  context.log.writeLine("333333333");
  state.openDesigns = std::move(designs);
  context.log.writeLine("1723");
  return state.openDesigns;
}

void noteReported(Services& services, std::string_view name) {
  note(services.state, named(name), {hostPathOf(services, name), std::string(name)});
}

void noteWithoutPins(Services& services, std::string_view hostPath) {
  note(services.state, [&](const KnownDesign* design) { return design->hostPath == hostPath; },
       {std::string(hostPath), designName(services, hostPath)});
}

void noteClosed(GlobalState& state, std::string_view name) {
  Designs& reported = state.reportedDesigns;
  const Difference difference = differenceOf(state);
  const auto closed = std::find_if(difference.closed.begin(), difference.closed.end(), named(name));
  if (closed != difference.closed.end()) {
    reported.erase(reported.begin() + (*closed - reported.data()));
    return;
  }
  const auto open =
      std::find_if(reported.begin(), reported.end(), [&](const KnownDesign& design) { return design.name == name; });
  if (open != reported.end()) {
    reported.erase(open);
  }
}

std::optional<std::string> firstUnreported(const GlobalState& state) {
  const Difference difference = differenceOf(state);
  return difference.unreported.empty() ? std::nullopt : std::optional(difference.unreported.front()->hostPath);
}

std::string closedDesigns(const GlobalState& state) {
  std::string closed;
  for (const KnownDesign* design : differenceOf(state).closed) {
    closed.append(closed.empty() ? "" : ";").append(design->hostPath);
  }
  return closed;
}

}  // namespace vernoxa
