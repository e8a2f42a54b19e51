#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "target.h"

namespace vernoxa::fuzz {
namespace {

constexpr std::array all = {
    Target{"packet_text", packetText},      Target{"frame", frame},
    Target{"envelope", envelope},           Target{"link_thread", linkThread},
    Target{"configuration", configuration}, Target{"texts", texts},
    Target{"script_text", scriptText},      Target{"registry", registry},
    Target{"metafile", metafile},           Target{"companion_packet", companionPacket},
    Target{"thread_packet", threadPacket},  Target{"commands", commands},
    Target{"module_file", moduleFile},
};

}  // namespace

std::span<const Target> targets() {
  return all;
}

const Target* findTarget(std::string_view name) {
  const auto found = std::find_if(all.begin(), all.end(), [&](const Target& each) { return name == each.name; });
  return found == all.end() ? nullptr : &*found;
}

void require(bool holds, std::string_view finding) {
  if (!holds) {
    std::fprintf(stderr, "FINDING: %.*s\n", static_cast<int>(finding.size()), finding.data());
    std::abort();
  }
}

std::string_view takeUntil(std::string_view& left, char separator) {
  const std::size_t end = std::min(left.find(separator), left.size());
  const std::string_view taken = left.substr(0, end);
  left.remove_prefix(std::min(end + 1, left.size()));
  return taken;
}

}  // namespace vernoxa::fuzz
