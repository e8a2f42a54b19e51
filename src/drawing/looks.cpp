// What codes of the host look like in files: colours, lines, fills, turns, fonts, pins and more.

#include <algorithm>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <utility>

#include "drawing/shapes.h"
#include "text/decimal.h"

namespace vernoxa::drawing {

// A short clock pin's line begins at 6 in a drawing, as if it had a dot, but not in a pad stack: readers of both know
// it so.
constexpr std::array<PinShape, 8> pinShapes = {{
    {"#PackagePinLongClockDot", "6", "6", "30", true, true},
    {"#PackagePinLong", "0", "0", "30", false, false},
    {"#PackagePinLongClock", "0", "0", "30", false, true},
    {"#PackagePinLongDot", "6", "6", "30", true, false},
    {"#PackagePinShortClockDot", "6", "6", "10", true, true},
    {"#PackagePinShort", "0", "0", "10", false, false},
    {"#PackagePinShortClock", "6", "0", "10", false, true},
    {"#PackagePinShortDot", "6", "6", "10", true, false},
}};

namespace {

// The editor's palette. That some colours stand in it twice is the editor's doing.
constexpr std::array<std::string_view, 48> palette = {
    "#0000FF", "#FFFF80", "#80FF80", "#00FF80", "#80FFFF", "#0080FF", "#FF80C0", "#FF80FF", "#FF0000", "#FFFF00",
    "#80FF00", "#00FF40", "#00FFFF", "#0080C0", "#8080C0", "#FF00FF", "#804040", "#FF8040", "#00FF00", "#008080",
    "#004080", "#8080FF", "#800040", "#FF0080", "#800000", "#FF8000", "#008000", "#008040", "#0000FF", "#000080",
    "#800080", "#8000FF", "#400000", "#804000", "#004000", "#004040", "#000080", "#000040", "#400040", "#400080",
    "#000000", "#808000", "#808040", "#808080", "#408080", "#C0C0C0", "#400040", "#FFFFFF"};

constexpr Look::Row dashPatterns[] = {{"0", "0,0"},      {"1", "10,5"},         {"2", "5,5"},
                                      {"3", "10,5,3,5"}, {"4", "10,3,3,3,3,3"}, {"5", "0,0"}};

// The width after the widest, 3, is the editor's default, which is thin.
constexpr Look::Row strokeWidths[] = {{"0", "1"}, {"1", "4"}, {"2", "7"}};
constexpr Look::Row pageStrokeWidths[] = {{"0", "1"}, {"1", "2"}, {"2", "3"}, {"3", "1"}, {"BusWire", "5"}};
constexpr Look::Row ownWidths[] = {{"0", "1"}};

constexpr Look::Row mirrorScales[] = {{"1", "-1,1"}, {"2", "1,-1"}};

// Always written as turns to the left, -270 and not 90: readers of the drawings compare these texts.
constexpr Look::Row rotationAngles[] = {{"1", "-90"}, {"2", "180"}, {"3", "-270"}, {"TOP", "-90"}, {"BOTTOM", "-90"}};
constexpr Look::Row pinSideAngles[] = {{"LEFT", "180"}, {"RIGHT", "0"}, {"TOP", "-90"}, {"BOTTOM", "-270"}};

// Only the heights whose size is not the height without its sign.
constexpr Look::Row fontSizes[] = {{"-7", "5"},  {"-8", "6"},   {"-9", "7"},  {"-10", "8"},
                                   {"-12", "9"}, {"-14", "13"}, {"-21", "22"}};

// As C's atoi reads it, but what is too large for an int saturates, and a negative number is 0.
std::size_t leadingNumber(std::string_view text) {
  constexpr std::size_t largest = std::numeric_limits<int>::max();
  const auto* at = text.begin();
  at = std::find_if(at, text.end(), [](char each) { return each != ' ' && (each < '\t' || each > '\r'); });
  at += at != text.end() && *at == '+' ? 1 : 0;
  std::size_t number = 0;
  for (; at != text.end() && *at >= '0' && *at <= '9'; ++at) {
    number = std::min(10 * number + static_cast<std::size_t>(*at - '0'), largest);
  }
  return number;
}

std::string_view colour(std::string_view code) {
  return palette[leadingNumber(code) % palette.size()];
}

std::string_view pathY(std::string_view path) {
  return firstNumber(firstNumber(path).second).first;
}

// The reference of the shape that the host's keywords describe; empty for a pin of no length, which is not drawn.
std::string_view pinReference(std::string_view keywords) {
  const auto has = [keywords](std::string_view word) { return keywords.find(word) != std::string_view::npos; };
  if (has("ZERO")) {
    return {};
  }
  const std::string_view end = has("SHORT") ? "10" : "30";
  const bool clock = has("CLOCK");
  const bool dot = has("DOT");
  const auto* const shape = std::find_if(pinShapes.begin(), pinShapes.end(), [&](const PinShape& each) {
    return each.clock == clock && each.dot == dot && each.lineEnd == end;
  });
  return shape->reference;  // there is one for each combination
}

constexpr auto itself = [](std::string_view code) { return code; };

constexpr Look looks[] = {
    {"colour", {}, colour},  // "#" and six upper-case hexadecimal digits; codes count round the 48 colours
    {"fill", {}, colour},    // the same of a shape that may be filled
    {"dash", dashPatterns, itself},
    {"width", strokeWidths, itself},
    {"page-width", pageStrokeWidths, itself},  // of the lines, wires and buses of a page; "BusWire" is a code too
    {"own-width", ownWidths, itself},          // of a symbol's line, which gives it as it is; 0 is the thinnest
    {"scale", mirrorScales, [](std::string_view) -> std::string_view { return "1,1"; }},
    {"angle", rotationAngles, [](std::string_view) -> std::string_view { return "0"; }},  // degrees, of placed objects
    {"side", pinSideAngles, itself},                                                      // degrees, of a pin
    // negative heights are character heights
    {"font-size", fontSizes, [](std::string_view height) { return height.substr(height.starts_with('-') ? 1 : 0); }},
    {"pin", {}, pinReference},
    // the first two numbers of a point list ("10,20 30,40") or path data ("M 10 20 L 30 40"), and a space between two
    {"x", {}, [](std::string_view path) { return firstNumber(path).first; }},
    {"gap", {}, [](std::string_view path) -> std::string_view { return pathY(path).empty() ? "" : " "; }},
    {"y", {}, pathY},
    // a host's placeholder is not exported
    {"unless-placeholder", {}, [](std::string_view value) { return value.find('$') == value.npos ? value : ""; }},
};

}  // namespace

std::string_view Look::of(std::string_view code) const {
  for (const Row& row : rows) {
    // Nearly all codes are one character: what is longer is compared only where it may be equal.
    if (row.code.size() == code.size() && row.code[0] == code[0] && (code.size() == 1 || row.code == code)) {
      return row.result;
    }
  }
  return otherwise(code);
}

const Look& lookNamed(std::string_view name) {
  const auto* const named =
      std::find_if(std::begin(looks), std::end(looks), [&](const Look& each) { return each.name == name; });
  // Never false: the names are those of our own rows.
  return named != std::end(looks) ? *named : throw std::out_of_range("no such look");
}

}  // namespace vernoxa::drawing
