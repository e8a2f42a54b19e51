// Random numbers, from which file names are made.
#pragma once

#include <chrono>
#include <random>

namespace vernoxa::inline system {

class RandomNumbers {
 public:
  virtual ~RandomNumbers() = default;
  // Never negative.
  virtual int next() = 0;
};

// Seeded with the time at which it is created.
class TimeSeededNumbers final : public RandomNumbers {
 public:
  int next() override { return static_cast<int>(engine_()); }  // at most 2147483646

 private:
  std::minstd_rand engine_{
      static_cast<std::minstd_rand::result_type>(std::chrono::system_clock::now().time_since_epoch().count())};
};

}  // namespace vernoxa::inline system
