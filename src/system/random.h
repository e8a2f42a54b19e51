// Random numbers, for names that nobody else uses.
#pragma once

#include <random>

namespace vernoxa {

class RandomNumbers {
 public:
  virtual ~RandomNumbers() = default;
  // Never negative.
  virtual int next() = 0;
};

// Seeded with the time of its making.
class TimeSeededNumbers final : public RandomNumbers {
 public:
  TimeSeededNumbers();
  int next() override;

 private:
  std::minstd_rand engine_;
};

}  // namespace vernoxa
