#include "drawing/style_tables.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace vernoxa {
namespace {

struct Row {
  std::string_view code;
  std::string_view result;
};

std::string_view lookUp(std::span<const Row> table, std::string_view code, std::string_view otherwise) {
  for (const Row& row : table) {
    // Nearly all codes are one character: what is longer is compared only where it may be equal.
    if (row.code.size() == code.size() && row.code[0] == code[0] && (code.size() == 1 || row.code == code)) {
      return row.result;
    }
  }
  return otherwise;
}

// The editor's palette. That some colours stand in it twice is the editor's doing.
constexpr std::array<std::string_view, 48> palette = {
    "#0000FF", "#FFFF80", "#80FF80", "#00FF80", "#80FFFF", "#0080FF", "#FF80C0", "#FF80FF", "#FF0000", "#FFFF00",
    "#80FF00", "#00FF40", "#00FFFF", "#0080C0", "#8080C0", "#FF00FF", "#804040", "#FF8040", "#00FF00", "#008080",
    "#004080", "#8080FF", "#800040", "#FF0080", "#800000", "#FF8000", "#008000", "#008040", "#0000FF", "#000080",
    "#800080", "#8000FF", "#400000", "#804000", "#004000", "#004040", "#000080", "#000040", "#400040", "#400080",
    "#000000", "#808000", "#808040", "#808080", "#408080", "#C0C0C0", "#400040", "#FFFFFF"};

constexpr std::array dashPatterns = {Row{"0", "0,0"},      Row{"1", "10,5"},         Row{"2", "5,5"},
                                     Row{"3", "10,5,3,5"}, Row{"4", "10,3,3,3,3,3"}, Row{"5", "0,0"}};

// The width after the widest is the editor's default, which is thin: neither table rises to its end.
constexpr std::array strokeWidths = {Row{"0", "1"}, Row{"1", "4"}, Row{"2", "7"}, Row{"3", "3"}};
constexpr std::array pageStrokeWidths = {Row{"0", "1"}, Row{"1", "2"}, Row{"2", "3"}, Row{"3", "1"},
                                         Row{"BusWire", "5"}};

constexpr std::array mirrorScales = {Row{"1", "-1,1"}, Row{"2", "1,-1"}};

// Always written as turns to the left, -270 and not 90: readers of the drawings compare these texts.
constexpr std::array rotationAngles = {Row{"1", "-90"}, Row{"2", "180"}, Row{"3", "-270"}, Row{"TOP", "-90"},
                                       Row{"BOTTOM", "-90"}};
constexpr std::array pinSideAngles = {Row{"LEFT", "180"}, Row{"RIGHT", "0"}, Row{"TOP", "-90"}, Row{"BOTTOM", "-270"}};

// Only the heights whose size is not the height without its sign.
constexpr std::array fontSizes = {Row{"-7", "5"},  Row{"-8", "6"},   Row{"-9", "7"},  Row{"-10", "8"},
                                  Row{"-12", "9"}, Row{"-14", "13"}, Row{"-21", "22"}};

// As C's atoi reads it, but what is too large for an int saturates, and a negative number is 0.
std::uint64_t leadingNumber(std::string_view text) {
  constexpr std::uint64_t largest = std::numeric_limits<int>::max();
  const auto* next = text.begin();
  while (next != text.end() && (*next == ' ' || (*next >= '\t' && *next <= '\r'))) {
    ++next;
  }
  if (next != text.end() && *next == '+') {
    ++next;
  }
  std::uint64_t number = 0;
  for (; next != text.end() && *next >= '0' && *next <= '9'; ++next) {
    number = std::min(number * 10 + static_cast<unsigned>(*next - '0'), largest);
  }
  return number;
}

}  // namespace

std::string_view colour(std::string_view code) {
  return palette[leadingNumber(code) % palette.size()];
}

std::string_view dashPattern(std::string_view lineStyle) {
  return lookUp(dashPatterns, lineStyle, lineStyle);
}

std::string_view strokeWidth(std::string_view lineWidth) {
  return lookUp(strokeWidths, lineWidth, lineWidth);
}

std::string_view pageStrokeWidth(std::string_view lineWidth) {
  return lookUp(pageStrokeWidths, lineWidth, lineWidth);
}

std::string_view fill(std::string_view fillStyle, std::string_view shapeColour) {
  return fillStyle == "0" ? shapeColour : "none";
}

std::string_view mirrorScale(std::string_view mirror) {
  return lookUp(mirrorScales, mirror, "1,1");
}

std::string_view rotationAngle(std::string_view rotation) {
  return lookUp(rotationAngles, rotation, "0");
}

std::string_view pinSideAngle(std::string_view side) {
  return lookUp(pinSideAngles, side, side);
}

std::string_view fontSize(std::string_view height) {
  return lookUp(fontSizes, height, height.substr(height.starts_with('-') ? 1 : 0));
}

}  // namespace vernoxa
