#include "support/sample_metafiles.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <random>

namespace vernoxa {
namespace {

constexpr std::array names = {"lines", "short_lines", "mapping", "paths",         "brushes",  "palettes",
                              "texts", "regions",     "bitmaps", "image_formats", "comments", "gradients"};

using Dice = std::mt19937;

std::size_t below(Dice& dice, std::size_t limit) {
  return dice() % std::max<std::size_t>(limit, 1);
}

std::uint32_t tellingNumber(Dice& dice, std::uint32_t former) {
  const auto any = static_cast<std::uint32_t>(dice());
  constexpr std::uint32_t thousandMillion = 0x4E6E6B28U;  // and a tenth of a thousandth, as floats
  constexpr std::uint32_t tiny = 0x38D1B717U;
  const std::array choices = {0U,          1U,          former + 1, former - 1,     former * 2, former ^ 0x80000000,
                              0x7FFFFFFFU, 0x80000000U, ~0U,        0xFFFFU,        0x10000U,   0x40000000U,
                              any % 4096,  any,         tiny,       thousandMillion};
  return choices[below(dice, choices.size())];
}

// SETWORLDTRANSFORM, by one factor in both directions.
std::string worldTransformation(std::uint32_t factor) {
  return numbersOf({35, 32, factor, 0, 0, factor, 0, 0});
}

std::string spoil(std::string bytes, Dice& dice) {
  const auto places = recordPlaces(bytes);
  const std::size_t record = places[below(dice, places.size())];
  const std::size_t length = std::min<std::size_t>(numberAt(bytes, record + 4), bytes.size() - record);
  const std::size_t number = record + (length > 8 ? 8 + below(dice, length / 4 - 2) * 4 : 4);
  switch (below(dice, 17)) {
    case 0:
      bytes[record + below(dice, length)] = static_cast<char>(dice());
      return bytes;
    case 1:
      return withNumber(bytes, record + 4, tellingNumber(dice, numberAt(bytes, record + 4)));
    case 2:
      return withNumber(bytes, record, static_cast<std::uint32_t>(below(dice, 125)));
    case 3:  // once more, or none
      return record == 0 ? bytes : bytes.insert(record, bytes.substr(record, length));
    case 4:
      return record == 0 ? bytes : bytes.erase(record, length);
    case 5:
      return bytes.substr(0, bytes.size() - below(dice, bytes.size() / 8));
    case 6:  // under a transformation of its own
      return record == 0 ? bytes : bytes.insert(record, worldTransformation(tellingNumber(dice, 0)));
    default:  // what the size of the picture is made of changes rarely: most would be as large as any may be
      return number >= 24 && number < 40 && below(dice, 16) != 0
                 ? bytes
                 : withNumber(bytes, number, tellingNumber(dice, numberAt(bytes, number)));
  }
}

}  // namespace

std::vector<SampleMetafile> sampleMetafiles() {
  std::vector<SampleMetafile> samples;
  for (const char* const name : names) {
    samples.push_back({name, sampleMetafile(name)});
  }
  return samples;
}

std::string sampleMetafile(const std::string& name) {
  std::ifstream stream(METAFILE_FOLDER + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::uint32_t numberAt(std::string_view bytes, std::size_t place) {
  std::uint32_t number = 0;
  for (std::size_t index = 4; place + 4 <= bytes.size() && index > 0; --index) {
    number = number << 8U | static_cast<unsigned char>(bytes[place + index - 1]);
  }
  return number;
}

std::vector<std::size_t> recordPlaces(std::string_view metafile) {
  std::vector<std::size_t> places;
  for (std::size_t place = 0; place + 8 <= metafile.size();) {
    places.push_back(place);
    place += std::max(numberAt(metafile, place + 4), 8U);
  }
  return places;
}

std::size_t findRecord(std::string_view metafile, std::uint32_t type) {
  for (const std::size_t place : recordPlaces(metafile)) {
    if (numberAt(metafile, place) == type) {
      return place;
    }
  }
  return std::string_view::npos;
}

std::string numbersOf(const std::vector<std::uint32_t>& numbers) {
  std::string bytes(numbers.size() * 4, '\0');
  for (std::size_t index = 0; index < numbers.size(); ++index) {
    bytes = withNumber(bytes, index * 4, numbers[index]);
  }
  return bytes;
}

std::string withNumber(std::string bytes, std::size_t place, std::uint32_t number) {
  for (std::size_t index = place; index < place + 4 && place + 4 <= bytes.size(); ++index) {
    bytes[index] = static_cast<char>(number & 0xFFU);
    number >>= 8U;
  }
  return bytes;
}

SampleMetafile spoiltMetafile(std::uint32_t seed) {
  static const std::vector<SampleMetafile> samples = sampleMetafiles();
  constexpr std::size_t bytesAt = 48;
  Dice dice(seed);
  SampleMetafile made = samples[below(dice, samples.size())];
  for (std::size_t changes = 1 + below(dice, 3); changes > 0; --changes) {
    made.bytes = spoil(made.bytes, dice);
  }
  if (below(dice, 8) != 0) {  // the system looks at this number itself
    made.bytes.resize(made.bytes.size() / 4 * 4);
    made.bytes = withNumber(made.bytes, bytesAt, static_cast<std::uint32_t>(made.bytes.size()));
  }
  return made;
}

}  // namespace vernoxa
