#include "export/decimal.h"

#include <algorithm>
#include <limits>

namespace vernoxa {
namespace {

constexpr std::int64_t unitsOfOne = 1'000'000;

std::int64_t limit(bool negative) {
  return negative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

std::int64_t sum(std::int64_t left, std::int64_t right) {
  std::int64_t result = 0;
  return __builtin_add_overflow(left, right, &result) ? limit(left < 0) : result;
}

std::int64_t product(std::int64_t left, std::int64_t right) {
  std::int64_t result = 0;
  return __builtin_mul_overflow(left, right, &result) ? limit((left < 0) != (right < 0)) : result;
}

bool isDigit(std::string_view text) {
  return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

// Takes the digits that the text begins with, each worth `unit`, or a tenth of the one before when they are a fraction.
std::int64_t takeDigits(std::string_view& text, std::int64_t units, bool fraction) {
  for (std::int64_t unit = unitsOfOne; isDigit(text); text.remove_prefix(1)) {
    const std::int64_t digit = text.front() - '0';
    unit /= fraction ? 10 : 1;
    units = sum(fraction ? units : product(units, 10), digit * unit);
  }
  return units;
}

}  // namespace

Decimal Decimal::read(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  const bool negative = text.starts_with('-');
  text.remove_prefix(negative || text.starts_with('+') ? 1 : 0);
  std::int64_t units = takeDigits(text, 0, false);
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    units = takeDigits(text, units, true);
  }
  return Decimal(negative ? -units : units);
}

Decimal Decimal::whole(std::int64_t number) {
  return Decimal(product(number, unitsOfOne));
}

Decimal Decimal::operator+(Decimal other) const {
  return Decimal(sum(units_, other.units_));
}

Decimal Decimal::operator-(Decimal other) const {
  return *this + other * -1;
}

Decimal Decimal::operator*(std::int64_t factor) const {
  return Decimal(product(units_, factor));
}

std::string Decimal::text() const {
  std::string fraction = std::to_string(unitsOfOne + (units_ < 0 ? -(units_ % unitsOfOne) : units_ % unitsOfOne));
  fraction.front() = '.';
  fraction.erase(fraction.find_last_not_of('0') + 1);
  const std::string whole = std::to_string(units_ / unitsOfOne);
  const bool signLost = units_ < 0 && units_ > -unitsOfOne;
  return (signLost ? "-" : "") + whole + (fraction == "." ? "" : fraction);
}

}  // namespace vernoxa
