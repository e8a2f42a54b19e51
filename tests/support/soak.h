// Tests that only show something over many calls: few in every run, more when VERNOXA_SOAK_CALLS says how many.
#pragma once

#include <cstdlib>

namespace vernoxa {

inline int soakCalls(int everyRun) {
  const char* const wanted = std::getenv("VERNOXA_SOAK_CALLS");
  return wanted != nullptr ? std::atoi(wanted) : everyRun;
}

}  // namespace vernoxa
