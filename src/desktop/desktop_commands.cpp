#include "desktop/desktop_commands.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "desktop/clipboard_opening.h"
#include "desktop/clipboard_picture.h"
#include "dispatch/services.h"
#include "dispatch/state.h"
#include "system/clipboard.h"
#include "system/clock.h"
#include "system/desktop.h"
#include "system/log.h"
#include "system/user_messages.h"
#include "system/world.h"
#include "text/code_page.h"
#include "text/path_text.h"
#include "text/text.h"

namespace vernoxa {
namespace {

using namespace std::chrono_literals;

constexpr auto beforeKey = 200ms;
constexpr auto keyHeld = 50ms;

// Nothing after the user was told that they cannot be read.
std::optional<std::vector<std::string>> sortedCandidates(Services& services, std::string_view text) {
  try {
    std::vector<std::string> candidates = splitItems(text, ';');
    std::sort(candidates.begin(), candidates.end());
    return candidates;
  } catch (const std::exception&) {
    services.world.messages.show(u8"跳转数据错误", MessageIcon::none);
    return std::nullopt;
  }
}

std::string choose(Services& services, const std::vector<std::string>& candidates) {
  std::vector<std::string> shown;
  shown.reserve(candidates.size());
  for (const std::string& candidate : candidates) {
    shown.push_back(services.text.hostPath(candidate));
  }
  const auto chosen = services.world.desktop.choose(shown);
  return chosen ? candidates.at(*chosen) : std::string();
}

}  // namespace

CommandResult selectJumpPart(CommandCall& call, Services& services) {
  if (call.arguments.count() < 3) {
    return {};
  }
  try {
    const auto candidates = sortedCandidates(services, call.arguments.text(1));
    return {candidates ? choose(services, *candidates) : std::string()};
  } catch (...) {
    services.logs.reportCrash("SelectJumpPart");
    return {};
  }
}

CommandResult getClipBoardPic(CommandCall&, Services& services) {
  const FilePath path = saveClipboardPicture(services);
  if (!path.empty()) {
    services.state.placement.dsnBmpPath = pathText(services, path);  // goes with the next module that is handed over
  }
  return {path.utf8()};
}

CommandResult getMousePosition(CommandCall&, Services& services) {
  const ScreenPoint cursor = services.world.desktop.cursor();
  return {std::to_string(cursor.x) + " " + std::to_string(cursor.y)};
}

CommandResult writeToClipboard(CommandCall& call, Services& services) {
  const std::string text = services.text.utf8ToAnsi(call.arguments.text(1));
  const auto clipboard = openClipboard(services.world);
  if (!clipboard) {
    return {{}, commandError};
  }
  clipboard->replaceByText(text);
  return {};
}

CommandResult pressEnter(CommandCall&, Services& services) {
  // The system's parts outlive every session.
  services.world.desktop.runInBackground([&clock = services.world.clock, &desktop = services.world.desktop] {
    clock.sleep(beforeKey);
    desktop.moveKey(Key::enter, KeyMove::press);
    clock.sleep(keyHeld);
    desktop.moveKey(Key::enter, KeyMove::release);
  });
  return {};
}

CommandResult afterPlace(CommandCall&, Services& services) {
  services.world.desktop.moveKey(Key::escape, KeyMove::press);
  services.world.desktop.moveKey(Key::escape, KeyMove::release);
  return {};
}

}  // namespace vernoxa
