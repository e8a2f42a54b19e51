#include "system/random.h"

#include <chrono>

namespace vernoxa {

TimeSeededNumbers::TimeSeededNumbers()
    : engine_(static_cast<std::minstd_rand::result_type>(std::chrono::system_clock::now().time_since_epoch().count())) {
}

int TimeSeededNumbers::next() {
  return static_cast<int>(engine_());  // at most 2147483646
}

}  // namespace vernoxa
