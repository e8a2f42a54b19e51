// Time, passed in so that tests run waits of hours in milliseconds.
#pragma once

#include <chrono>

namespace vernoxa::inline system {

// Fields of the local time as people write them: month and day count from 1.
struct LocalTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int milliseconds = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime localTime() = 0;
  // A clock that never goes back; for measuring waits.
  virtual std::chrono::milliseconds monotonic() = 0;
  virtual void sleep(std::chrono::milliseconds duration) = 0;
};

}  // namespace vernoxa::inline system
