// Coordinates that are moved: decimal numbers, so that 0.1 and 0.2 make 0.3.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vernoxa {

// Six places behind the point; what is larger than nine million millions saturates.
class Decimal {
 public:
  // The number that the text begins with; without one, 0. Further places are cut.
  static Decimal read(std::string_view text);
  static Decimal whole(std::int64_t number);

  Decimal operator+(Decimal other) const;
  Decimal operator-(Decimal other) const;
  Decimal operator*(std::int64_t factor) const;
  // Without a point when whole, else without last zeros.
  std::string text() const;

 private:
  explicit Decimal(std::int64_t units) : units_(units) {}

  std::int64_t units_;
};

}  // namespace vernoxa
