// Coordinates and sizes as exact decimal numbers: 0.1 and 0.2 make 0.3.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vernoxa::inline text {

// Six decimal places. Values beyond nine million millions saturate.
class Decimal {
 public:
  // The number at the beginning of the text, after spaces and tabs: a sign, digits with or without a point, and an
  // exponent ("1e3", "-2.5E-02"). 0 if there is no number. Further decimal places are cut off.
  static Decimal read(std::string_view text);
  // The same if the whole text is a number; else `nullopt`.
  static std::optional<Decimal> of(std::string_view text);
  static Decimal whole(std::int64_t number);

  Decimal operator+(Decimal other) const;
  Decimal operator-(Decimal other) const;
  Decimal operator*(std::int64_t factor) const;
  bool operator==(const Decimal&) const = default;
  auto operator<=>(const Decimal&) const = default;  // NOLINT(modernize-use-nullptr): the compiler's own 0
  // Without an exponent and without zeros at the end; a whole number has no point.
  std::string text() const;

 private:
  explicit Decimal(std::int64_t units) : units_(units) {}

  std::int64_t units_;
};

// The first number in a text, with its exponent, and what follows it. A sign or a point alone is not a number.
std::pair<std::string_view, std::string_view> firstNumber(std::string_view text);

}  // namespace vernoxa::inline text
