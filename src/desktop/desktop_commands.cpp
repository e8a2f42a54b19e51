#include "desktop/desktop_commands.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "desktop/clipboard_picture.h"
#include "system/clipboard.h"
#include "system/clock.h"
#include "system/desktop.h"
#include "system/log.h"
#include "system/user_messages.h"
#include "text/code_page.h"
#include "text/message_paths.h"
#include "text/text.h"

namespace vernoxa {
namespace {

using namespace std::chrono_literals;

constexpr auto beforeKey = 200ms;
constexpr auto keyHeld = 50ms;

// `nullopt` after the user was told that they cannot be read.
std::optional<std::vector<std::string>> sortedCandidates(UserMessages& messages, std::string_view text) {
  try {
    std::vector<std::string> candidates = splitItems(text, ';');
    std::sort(candidates.begin(), candidates.end());
    return candidates;
  } catch (const std::exception&) {
    messages.show(u8"跳转数据错误", MessageIcon::none);
    return std::nullopt;
  }
}

std::string choose(Desktop& desktop, const TextConverter& text, const std::vector<std::string>& candidates) {
  std::vector<std::string> shown;
  shown.reserve(candidates.size());
  for (const std::string& candidate : candidates) {
    shown.push_back(text.hostPath(candidate));
  }
  const auto chosen = desktop.choose(shown);
  return chosen ? candidates.at(*chosen) : std::string();
}

}  // namespace

CommandResult selectJumpPart(CommandCall& call, Desktop& desktop, UserMessages& messages, const TextConverter& text,
                             const Logs& logs) {
  if (call.arguments.count() < 3) {
    return {};
  }
  try {
    const auto candidates = sortedCandidates(messages, call.arguments.text(1));
    return {candidates ? choose(desktop, text, *candidates) : std::string()};
  } catch (...) {
    logs.reportCrash("SelectJumpPart");
    return {};
  }
}

CommandResult getClipBoardPic(CommandCall&, const ClipboardPicture& picture, const MessagePaths& paths,
                              PreviewPicture& preview) {
  const FilePath path = picture.save();
  if (!path.empty()) {
    preview.path = paths.of(path);
  }
  return {path.utf8()};
}

CommandResult getMousePosition(CommandCall&, Desktop& desktop) {
  const ScreenPoint cursor = desktop.cursor();
  return {std::to_string(cursor.x) + " " + std::to_string(cursor.y)};
}

CommandResult writeToClipboard(CommandCall& call, Clipboard& clipboard, Clock& clock, const TextConverter& text) {
  const std::string content = text.utf8ToAnsi(call.arguments.text(1));
  const auto opened = openClipboard(clipboard, clock);
  if (!opened) {
    return {{}, commandError};
  }
  opened->replaceByText(content);
  return {};
}

CommandResult pressEnter(CommandCall&, Desktop& desktop, Clock& clock) {
  // The system's parts outlive every session.
  desktop.runInBackground([&clock, &desktop] {
    clock.sleep(beforeKey);
    desktop.moveKey(Key::enter, KeyMove::press);
    clock.sleep(keyHeld);
    desktop.moveKey(Key::enter, KeyMove::release);
  });
  return {};
}

CommandResult afterPlace(CommandCall&, Desktop& desktop) {
  desktop.moveKey(Key::escape, KeyMove::press);
  desktop.moveKey(Key::escape, KeyMove::release);
  return {};
}

}  // namespace vernoxa
