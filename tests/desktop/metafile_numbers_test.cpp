// Which numbers of each kind of record the check and the drawn extent go by, found by changing every number of every
// sample.
#include <gtest/gtest.h>

#include <array>
#include <map>

#include "desktop/metafile_check.h"
#include "desktop/metafile_extent.h"
#include "support/sample_metafiles.h"
#include "support/table.h"
#include "text/text.h"

namespace vernoxa::desktop {
namespace {

constexpr std::uint32_t large = 0x4E6E6B28;        // a thousand million as a float, and more as a number
constexpr std::uint32_t aPlace = 200;              // where no sample draws
constexpr std::uint32_t aShortPlace = 0x000100C8;  // another one, as two short numbers too
constexpr std::uint32_t behindAllCounts = 32;      // of points

// Places of numbers, each with what is said of it.
using Places = std::map<std::uint32_t, std::string>;

struct Numbers {
  Places bounded;  // refused when large, "+": already when one more
  Places drawn;    // moves the extent
};

std::string textOf(const Places& places) {
  std::string all;
  for (const auto& [at, said] : places) {
    all += std::to_string(at) + said + " ";
  }
  return all;
}

bool moves(const std::string& record, std::uint32_t at) {
  const auto extent = [](const std::string& bytes) {
    const DrawnExtent each = drawnExtent(MetafileRecord(bytes)).value_or(DrawnExtent{-1, -1, -1, -1});
    return std::array{each.left, each.top, each.right, each.bottom};
  };
  return extent(record) != extent(withNumber(record, at, at < behindAllCounts ? aPlace : aShortPlace));
}

void addNumbers(const std::string& metafile, std::size_t place, std::map<std::uint32_t, Numbers>& numbers) {
  const std::string record = metafile.substr(place, numberAt(metafile, place + 4));
  Numbers& kind = numbers[numberAt(record, 0)];
  for (std::uint32_t at = 8; at + 4 <= record.size(); at += 4) {
    const auto refused = [&](std::uint32_t number) {
      return metafileFault(withNumber(metafile, place + at, number)).has_value();
    };
    if (refused(large)) {
      std::string& said = kind.bounded[at];
      said = said == "+" || refused(numberAt(record, at) + 1) ? "+" : "";
    }
    if (moves(record, at)) {
      kind.drawn[at];
    }
  }
  if (kind.drawn.empty()) {
    EXPECT_FALSE(drawnExtent(MetafileRecord(record)).has_value()) << numberAt(record, 0);
  }
}

// Kinds of records, the places of the numbers that are bounded ("+": one more is too many), and of those that are
// drawn at. All other kinds have none.
constexpr const char* numbersByKind = R"(
2 3 4 5 6 | 24+ | 24 28 32 36 40 44 48 52 56
7 | 24+ 28+ 32+ 36+ | 24 28 40 44 48 52 56 60 64 68 72 76
8 | 24+ 28+ 32+ 36+ | 24 28 40 44 48 52 56 60 64 68 72 76 80 84
14 37 38 48 100 101 111 | 8 |
15 27 53 54 |  | 8 12
29 30 42 43 44 |  | 8 12 16 20
34 40 99 102 119 | 8+ |
39 | 8+ 12+ |
41 |  | 8 12 16
45 46 47 55 |  | 8 12 16 20 24 28 32 36
49 | 8+ 12 |
50 | 8 16+ |
51 | 8 12 |
56 | 24+ | 24 28 32 36 40 44 48
70 | 8+ 20+ 24+ 32+ 36+ 48+ 52+ 56+ 60+ 96+ 104+ 116+ 144 164+ 168+ 188+ 192+ 196 |
71 | 24+ 28 32+ 36+ 40+ | 40 64 68 72 76 80 84 88 92
72 | 24+ 28 40+ 44+ 48+ | 48 72 76 80 84 88 92 96 100
73 74 | 24+ 28+ 32+ 36+ | 36 60 64 68 72 76 80 84 88
75 | 8+ 12+ 16+ 20+ 24+ | 24 48 52 56 60 64 68 72 76
76 | 8 12 32 36 44 48 52 56 60 64 68 72 80 84+ 88+ 92+ 96+ 100+ 104 108+ 112+ 116+ 132 | 24 28 32 36
77 116 | 44 48 52 56 60 64 68 72 80 84+ 88 92+ 96+ 100 104 108+ 112+ 116+ 120+ 124+ 140 | 24 28 32 36
78 | 32 36 44 48 52 56 60 64 68 72 80 84+ 88 92+ 96+ 108 112+ 116 120 124 128+ 132 | 24 28 32 36
78 | 136+ 140+ 144+ 160 208+ 212+ 216+ 220+ 224+ 240 |
79 | 8 12 48 52 56 60 64 68 72 76 80 84 92 96+ 100 104+ 108+ 124+ 128+ 132+ | 24 28 32 36 40 44
79 | 136+ 140+ 144+ 148+ 152+ 156+ 172 |
80 | 32 36 40 44 48+ 52 56+ 60+ 64 72+ 76+ 80+ 88+ 92+ 108+ | 24 28 40 44
81 | 32 36 40 44 48+ 52 56+ 60+ 64 80+ 84+ 88+ 92+ 96+ 100+ 112+ | 24 28 72 76
82 | 8+ 364+ |
83 | 44+ 48 52 72+ | 36 40
84 | 44+ 48+ 52 72+ | 36 40
85 86 87 88 89 | 24+ | 24 28 32 36 40
90 91 | 24+ 28+ 32+ 36+ | 24 28 40 44 48 52 56
92 | 24+ | 24 28 32 36
93 | 8+ 12 16+ 20 24+ 28+ 32+ 36 40+ 44+ 48+ 64 |
94 | 8+ 12 16+ 20 24+ 28+ 32+ 36+ 40+ 44+ 48+ 64 |
95 | 8+ 12+ 16 20+ 24+ 36 40 48+ 52+ 56+ 60+ 64+ 68+ 84 |
96 97 | 36+ 48+ 52 56 76+ | 36 40 44
103 | 24+ |
105 106 | 12+ |
108 | 16+ | 8 12
110 112 113 | 12+ 16+ |
114 | 44 48 52 56 60 64 68 72 80 84+ 88 92+ 96+ 100 104 108+ 112+ 116+ 120+ 124+ 140+ | 24 28 32 36
118 | 24+ 28+ 84 88 92+ | 24 36 40 52 56 68 72
121 | 16+ 20+ |
122 | 8 604+ |
)";

TEST(MetafileNumbers, AreBoundedAndDrawnAtInEachKindOfRecord) {
  std::map<std::uint32_t, Numbers> numbers;
  for (const SampleMetafile& each : sampleMetafiles()) {
    for (const std::size_t place : recordPlaces(each.bytes)) {
      if (place != 0) {  // the header
        addNumbers(each.bytes, place, numbers);
      }
    }
  }
  std::map<std::uint32_t, std::array<std::string, 2>> expected;
  for (const auto& row : rowsOf(numbersByKind)) {
    for (const std::string& kind : splitItems(row[0], ' ')) {
      auto& [bounded, drawn] = expected[static_cast<std::uint32_t>(std::stoul(kind))];
      bounded += row[1].empty() ? "" : row[1] + " ";
      drawn += row[2].empty() ? "" : row[2] + " ";
    }
  }
  for (const auto& [kind, texts] : expected) {
    numbers[kind];  // none, where no sample has that kind
  }
  for (const auto& [kind, found] : numbers) {
    const auto& [bounded, drawn] = expected[kind];
    EXPECT_EQ(textOf(found.bounded), bounded) << kind;
    EXPECT_EQ(textOf(found.drawn), drawn) << kind;
  }
  const std::string ones = numbersOf(std::vector<std::uint32_t>(60, 1));  // longer than records without points are
  for (std::uint32_t kind = 0; kind < 200; ++kind) {
    EXPECT_EQ(drawnExtent(MetafileRecord(withNumber(ones, 0, kind))).has_value(), !expected[kind][1].empty()) << kind;
  }
}

}  // namespace
}  // namespace vernoxa::desktop
