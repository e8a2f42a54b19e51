#include "text/decimal.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace vernoxa::inline text {
namespace {

constexpr std::int64_t unitsOfOne = 1'000'000;
constexpr std::int64_t places = 6;

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

// Takes a sign; true for a minus.
bool takeSign(std::string_view& text) {
  const bool negative = text.starts_with('-');
  text.remove_prefix(negative || text.starts_with('+') ? 1 : 0);
  return negative;
}

std::string_view takeDigits(std::string_view& text) {
  const std::string_view digits = text.substr(0, text.find_first_not_of("0123456789"));
  text.remove_prefix(digits.size());
  return digits;
}

// Takes "e" and the whole number after it; takes nothing if there is no number. Limited to a value that no text is long
// enough to reach.
std::int64_t takeExponent(std::string_view& text) {
  constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
  if (!text.starts_with('e') && !text.starts_with('E')) {
    return 0;
  }
  std::string_view left = text.substr(1);
  const bool negative = takeSign(left);
  const std::string_view digits = takeDigits(left);
  std::int64_t exponent = 0;
  for (const char digit : digits) {
    exponent = std::min(exponent * 10 + (digit - '0'), largest);
  }
  text = digits.empty() ? text : left;
  return negative ? -exponent : exponent;
}

// The first `count` digits as a whole number; zeros stand in for missing ones.
std::int64_t firstDigits(std::string_view digits, std::int64_t count) {
  std::int64_t number = 0;
  for (const char digit : digits.substr(0, static_cast<std::size_t>(std::max<std::int64_t>(count, 0)))) {
    number = sum(product(number, 10), digit - '0');
  }
  for (auto size = static_cast<std::int64_t>(digits.size()); size < count && number != 0 && number != limit(false);
       ++size) {
    number = product(number, 10);
  }
  return number;
}

// Takes the number at the beginning of the text, in units; `nullopt` if there is no digit.
std::optional<std::int64_t> takeNumber(std::string_view& text) {
  const bool negative = takeSign(text);
  std::string digits(takeDigits(text));
  const auto wholeDigits = static_cast<std::int64_t>(digits.size());
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    digits += takeDigits(text);
  }
  if (digits.empty()) {
    return std::nullopt;
  }
  const std::int64_t units = firstDigits(digits, wholeDigits + takeExponent(text) + places);
  return negative ? -units : units;
}

}  // namespace

Decimal Decimal::read(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  return Decimal(takeNumber(text).value_or(0));
}

std::optional<Decimal> Decimal::of(std::string_view text) {
  const auto units = takeNumber(text);
  return units && text.empty() ? std::optional(Decimal(*units)) : std::nullopt;
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
  std::string fraction = std::to_string(unitsOfOne + std::abs(units_ % unitsOfOne));
  fraction.front() = '.';
  fraction.erase(fraction.find_last_not_of('0') + 1);
  const std::string whole = std::to_string(units_ / unitsOfOne);
  const bool signLost = units_ < 0 && units_ > -unitsOfOne;
  return (signLost ? "-" : "") + whole + (fraction == "." ? "" : fraction);
}

std::pair<std::string_view, std::string_view> firstNumber(std::string_view text) {
  constexpr std::string_view digits = "0123456789";
  const auto isSign = [](char c) { return c == '-' || c == '+'; };
  const std::size_t digit = text.find_first_of(digits);
  if (digit == std::string_view::npos) {
    return {};
  }
  const std::size_t point = text.substr(0, digit).find_last_not_of('.') + 1;
  text.remove_prefix(point > 0 && isSign(text[point - 1]) ? point - 1 : point);
  std::size_t end = std::min(text.find_first_not_of("0123456789.", 1), text.size());
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    const std::size_t exponent = end + (end + 1 < text.size() && isSign(text[end + 1]) ? 2 : 1);
    if (exponent < text.size() && digits.find(text[exponent]) != std::string_view::npos) {
      end = std::min(text.find_first_not_of(digits, exponent), text.size());
    }
  }
  return {text.substr(0, end), text.substr(end)};
}

}  // namespace vernoxa::inline text
