// Tests that only show something over many calls: few in every run, more when VERNOXA_SOAK_CALLS says how many.
#pragma once

#include <cstdlib>
#include <string_view>

namespace vernoxa {

inline int soakCalls(int everyRun) {
  const char* const wanted = std::getenv("VERNOXA_SOAK_CALLS");  // NOLINT(concurrency-mt-unsafe): nobody changes it
  return wanted != nullptr ? std::atoi(wanted) : everyRun;
}

// Whether everything is to be tried, not a sample: VERNOXA_TRUST=all in the environment.
inline bool tryEverything() {
  const char* const wish = std::getenv("VERNOXA_TRUST");  // NOLINT(concurrency-mt-unsafe): nobody changes it
  return wish != nullptr && std::string_view(wish) == "all";
}

}  // namespace vernoxa
