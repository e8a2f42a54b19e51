#include "commands/open_designs.h"

#include <algorithm>

#include "core/code_page.h"
#include "core/log.h"
#include "core/script_host.h"
#include "core/services.h"
#include "core/text.h"
#include "link/file_status.h"

namespace vernoxa {
namespace {

auto findTold(GlobalState& state, const std::string& name) {
  return std::find_if(state.toldDesigns.begin(), state.toldDesigns.end(),
                      [&](const ToldDesign& design) { return design.name == name; });
}

const std::string* findOpen(const Services& services, const std::string& name) {
  const auto& open = services.state.openDesigns;
  const auto found = std::find_if(open.begin(), open.end(),
                                  [&](const std::string& path) { return services.text.messageText(path) == name; });
  return found == open.end() ? nullptr : &*found;
}

}  // namespace

std::vector<std::string> scanOpenDesigns(HandlerContext& context) {
  context.log.writeLine("1111");
  const std::string paths = context.host.evaluate("InitPath").text;
  context.log.writeLine("22222222");
  std::vector<std::string> designs = designsAmong(paths);
  context.log.writeLine("333333333");
  context.services.state.openDesigns = designs;
  context.log.writeLine("1723");
  return designs;
}

void rememberTold(Services& services, std::string_view name) {
  const std::string told = services.text.messageText(name);
  if (findTold(services.state, told) == services.state.toldDesigns.end()) {
    const std::string* const open = findOpen(services, told);
    services.state.toldDesigns.push_back({told, open != nullptr ? *open : std::string(name)});
  }
}

void forgetTold(Services& services, std::string_view name) {
  const auto told = findTold(services.state, services.text.messageText(name));
  if (told != services.state.toldDesigns.end()) {
    services.state.toldDesigns.erase(told);
  }
}

std::optional<std::string> firstUntold(const Services& services) {
  for (const std::string& path : services.state.openDesigns) {
    if (findTold(services.state, services.text.messageText(path)) == services.state.toldDesigns.end()) {
      return path;
    }
  }
  return std::nullopt;
}

std::string closedDesigns(const Services& services) {
  std::string closed;
  for (const ToldDesign& design : services.state.toldDesigns) {
    if (findOpen(services, design.name) == nullptr) {
      closed.append(closed.empty() ? "" : ";").append(design.hostPath);
    }
  }
  return closed;
}

}  // namespace vernoxa
