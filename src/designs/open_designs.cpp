#include "designs/open_designs.h"

#include <algorithm>

#include "link/companion_link.h"
#include "link/file_status.h"
#include "system/log.h"
#include "tcl/script_host.h"
#include "text/message_paths.h"
#include "text/text_converter.h"

namespace vernoxa::designs {
namespace {

using Designs = std::vector<KnownDesign>;

auto named(std::string_view name) {
  return [name](const KnownDesign* design) { return design->name == name; };
}

bool holds(const Designs& designs, std::string_view hostPath) {
  return std::any_of(designs.begin(), designs.end(),
                     [&](const KnownDesign& design) { return design.hostPath == hostPath; });
}

// Open designs that are not reported, and reported ones that are not open, in their order.
struct Difference {
  std::vector<const KnownDesign*> unreported;
  std::vector<const KnownDesign*> closed;
};

std::vector<const KnownDesign*> without(const Designs& designs, const Designs& others) {
  std::vector<const KnownDesign*> left;
  for (const KnownDesign& design : designs) {
    const bool nameless = design.name.empty();  // no message can name it
    if (!nameless && !holds(others, design.hostPath)) {
      left.push_back(&design);
    }
  }
  return left;
}

Difference differenceOf(const Designs& open, const Designs& reported) {
  Difference left{without(open, reported), without(reported, open)};
  // Two with the same name in messages are one design, whose path the host now writes in other bytes.
  std::erase_if(left.unreported, [&](const KnownDesign* design) {
    const auto same = std::find_if(left.closed.begin(), left.closed.end(), named(design->name));
    if (same == left.closed.end()) {
      return false;
    }
    left.closed.erase(same);
    return true;
  });
  return left;
}

}  // namespace

// The host's path for a design that a message names: the name in UTF-8, if that gives the same name again.
std::string OpenDesigns::hostPathOf(std::string_view name) {
  const std::string path = converter_.ansiToUtf8(name);
  return paths_.ofDesign(path) == name ? path : std::string(name);
}

bool OpenDesigns::isReported(const KnownDesign& design) const {
  return std::any_of(reported_.begin(), reported_.end(), [&](const KnownDesign& reported) {
    // A name that the host wrote in two ways, neither of them open, is one design as well.
    return reported.hostPath == design.hostPath || reported.name == design.name;
  });
}

// Counts the wanted open design as reported; if it is not open, `otherwise`.
template <class Wanted>
void OpenDesigns::note(Wanted wanted, const KnownDesign& otherwise) {
  const Difference difference = differenceOf(open_, reported_);
  const auto open = std::find_if(difference.unreported.begin(), difference.unreported.end(), wanted);
  if (open != difference.unreported.end()) {
    reported_.push_back(**open);
  } else if (!isReported(otherwise)) {
    reported_.push_back(otherwise);
  }
}

// A design counted as reported because its pins could not be counted. If the link thread never received that answer,
// the design has to be reported after all.
void OpenDesigns::forgetUnreceivedCount() {
  const std::string lost = link_.takeAwaitedCount();
  if (!lost.empty()) {
    std::erase_if(reported_, [&](const KnownDesign& design) { return design.hostPath == lost; });
  }
}

void OpenDesigns::scan(ScriptHost& host, LogWriter& log) {
  forgetUnreceivedCount();
  log.writeLine("1111");
  const std::string paths = host.evaluate(Script("InitPath")).text;
  log.writeLine("22222222");
  Designs designs;
  for (std::string& path : link::designsAmong(paths)) {
    std::string name = paths_.ofDesign(path);
    designs.push_back({std::move(path), std::move(name)});
  }
  log.writeLine("333333333");
  open_ = std::move(designs);
  log.writeLine("1723");
}

void OpenDesigns::noteReported(std::string_view name) {
  note(named(name), {hostPathOf(name), std::string(name)});
}

void OpenDesigns::noteWithoutPins(std::string_view hostPath) {
  note([&](const KnownDesign* design) { return design->hostPath == hostPath; },
       {std::string(hostPath), paths_.ofDesign(hostPath)});
}

void OpenDesigns::noteClosed(std::string_view name) {
  const Difference difference = differenceOf(open_, reported_);
  const auto closed = std::find_if(difference.closed.begin(), difference.closed.end(), named(name));
  if (closed != difference.closed.end()) {
    reported_.erase(reported_.begin() + (*closed - reported_.data()));
    return;
  }
  const auto open =
      std::find_if(reported_.begin(), reported_.end(), [&](const KnownDesign& design) { return design.name == name; });
  if (open != reported_.end()) {
    reported_.erase(open);
  }
}

std::optional<std::string> OpenDesigns::firstUnreported() const {
  const Difference difference = differenceOf(open_, reported_);
  return difference.unreported.empty() ? std::nullopt : std::optional(difference.unreported.front()->hostPath);
}

std::string OpenDesigns::closed() const {
  std::string closed;
  for (const KnownDesign* design : differenceOf(open_, reported_).closed) {
    closed.append(closed.empty() ? "" : ";").append(design->hostPath);
  }
  return closed;
}

}  // namespace vernoxa::designs
