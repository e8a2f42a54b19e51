// Coordinates and sizes as numbers that are exact in decimal, so that 0.1 and 0.2 make 0.3.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vernoxa::inline text {

// Six places behind the point; what is larger than nine million millions saturates.
class Decimal {
 public:
  // The number that the text begins with, behind spaces and tabs: a sign, digits with or without a point, and an
  // exponent ("1e3", "-2.5E-02"). Without a number 0. Further places are cut.
  static Decimal read(std::string_view text);
  // The same for a text that is a number throughout; `nullopt` for any other.
  static std::optional<Decimal> of(std::string_view text);
  static Decimal whole(std::int64_t number);

  Decimal operator+(Decimal other) const;
  Decimal operator-(Decimal other) const;
  Decimal operator*(std::int64_t factor) const;
  bool operator==(const Decimal&) const = default;
  auto operator<=>(const Decimal&) const = default;  // NOLINT(modernize-use-nullptr): the compiler's own 0
  // Never with an exponent; without a point when whole, else without last zeros.
  std::string text() const;

 private:
  explicit Decimal(std::int64_t units) : units_(units) {}

  std::int64_t units_;
};

// The first number of a text, an exponent included, and what follows it. A sign and a point alone are none.
std::pair<std::string_view, std::string_view> firstNumber(std::string_view text);

}  // namespace vernoxa::inline text
