#include "views/selection_commands.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "system/desktop.h"
#include "system/log.h"
#include "system/user_messages.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::views {
namespace {

// `nullopt` if they cannot be read; the user has been told then.
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

std::string choose(Desktop& desktop, const TextConverter& converter, const std::vector<std::string>& candidates) {
  std::vector<std::string> shown;
  shown.reserve(candidates.size());
  for (const std::string& candidate : candidates) {
    shown.push_back(converter.hostPath(candidate));
  }
  const auto chosen = desktop.choose(shown);
  return chosen ? candidates.at(*chosen) : std::string();
}

}  // namespace

CommandResult selectJumpPart(CommandCall& call, Desktop& desktop, UserMessages& messages,
                             const TextConverter& converter, const Logs& logs) {
  if (call.arguments.count() < 3) {
    return {};
  }
  try {
    const auto candidates = sortedCandidates(messages, call.arguments.text(1));
    return {candidates ? choose(desktop, converter, *candidates) : std::string()};
  } catch (...) {
    logs.reportCrash("SelectJumpPart");
    return {};
  }
}

}  // namespace vernoxa::views
