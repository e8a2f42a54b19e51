// A clock that tests move. Usable from any thread.
#pragma once

#include <mutex>
#include <stdexcept>
#include <vector>

#include "system/clock.h"
#include "system/faults.h"

namespace vernoxa {

struct ClockStopped : std::runtime_error {
  ClockStopped() : std::runtime_error("the test ends here") {}
};

class FakeClock final : public Clock {
 public:
  // A clock that fails gives nothing but zeros, and one that measures leaps ahead, as when a computer slept.
  LocalTime localTime() override { return faults.strike() ? LocalTime{} : local; }
  std::chrono::milliseconds monotonic() override {
    const std::lock_guard lock(guard_);
    if (faults.strike()) {
      now_ += std::chrono::hours(1);
    }
    return now_;
  }
  // Returns at once, later. Throws ClockStopped in place of the sleep after `stopAfter` ones.
  void sleep(std::chrono::milliseconds duration) override {
    const std::lock_guard lock(guard_);
    if (stopAfter >= 0 && static_cast<int>(pauses_.size()) >= stopAfter) {
      throw ClockStopped();
    }
    pauses_.push_back(static_cast<int>(duration.count()));
    now_ += duration;
  }

  void advance(std::chrono::milliseconds duration) {
    const std::lock_guard lock(guard_);
    now_ += duration;
  }
  // Milliseconds of each sleep.
  std::vector<int> pauses() const {
    const std::lock_guard lock(guard_);
    return pauses_;
  }

  Faults faults;
  int stopAfter = -1;  // set before another thread runs
  LocalTime local{2024, 3, 5, 9, 7, 2, 45};

 private:
  mutable std::mutex guard_;
  std::chrono::milliseconds now_{1000};
  std::vector<int> pauses_;
};

}  // namespace vernoxa
