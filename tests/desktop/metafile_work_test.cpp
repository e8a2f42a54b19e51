#include "desktop/metafile_work.h"

#include <gtest/gtest.h>

#include <set>

#include "support/sample_metafiles.h"

namespace vernoxa::desktop {
namespace {

enum Type : std::uint32_t { polygon = 3, polylineTo = 6, lineTo = 54, beginPath = 59, fillPath = 62 };
enum PathType : std::uint32_t { strokeAndFillPath = 63, strokePath = 64, selectClipPath = 67 };

struct Step {
  std::uint32_t type;
  std::vector<std::uint32_t> points;  // x, y, x, y ...

  std::string record() const {
    std::vector<std::uint32_t> numbers = {type, 0};
    if (type != lineTo) {
      numbers.insert(numbers.end(), {0, 0, 0, 0, static_cast<std::uint32_t>(points.size() / 2)});
    }
    numbers.insert(numbers.end(), points.begin(), points.end());
    return numbersOf(numbers);
  }
};

// What the last record fills; nothing is 0.
TEST(FilledShapes, AreAsMuchWorkAsTheirOutlineCrossesRows) {
  const std::vector<std::uint32_t> zigzag = {0, 0, 10, 100, 20, 0, 30, 100, 40, 0};
  const std::vector<std::uint32_t> lying = {0, 0, 100, 10, 0, 20, 100, 30, 0, 40};
  const std::vector<std::uint32_t> back = {30, 100, 0, 0};
  const struct {
    std::vector<Step> steps;
    double crossings;
  } cases[] = {
      {{{polygon, zigzag}}, 4},
      {{{polygon, lying}}, 4},
      {{{polygon, {5, 5}}}, 0},
      {{{polylineTo, zigzag}}, 0},
      {{{fillPath, {}}}, 0},
      {{{polylineTo, zigzag}, {fillPath, {}}}, 4},
      {{{polylineTo, zigzag}, {selectClipPath, {}}}, 4},
      {{{polylineTo, zigzag}, {strokeAndFillPath, {}}}, 4},
      {{{polylineTo, zigzag}, {strokePath, {}}}, 0},
      {{{polylineTo, zigzag}, {polylineTo, back}, {fillPath, {}}}, 6},  // and the way from one to the other
      {{{polylineTo, zigzag}, {beginPath, {}}, {polylineTo, back}, {fillPath, {}}}, 1},
      {{{lineTo, {7, 0}}, {lineTo, {8, 50}}, {lineTo, {9, 0}}, {lineTo, {7, 50}}, {fillPath, {}}}, 3},
      {{{lineTo, {0, 0}}, {polylineTo, {0, 100, 50, 100}}, {lineTo, {200, 0}}, {fillPath, {}}}, 2},
      {{{polygon, {3, 7, 4, 7, 3, 7, 4, 7}}}, 3},
      {{{polygon, {3, 7, 3, 8, 3, 7, 3, 8}}}, 3},
      {{{lineTo, {7, 0}}, {polylineTo, {7, 0, 9, 0, 7, 0, 9, 0}}, {fillPath, {}}}, 3},
      // As far in each direction, and no edge is where a part of the path begins or ends.
      {{{lineTo, {50, 50}}, {polylineTo, {50, 50, 0, 0, 100, 100, 25, 25}}, {lineTo, {25, 25}}, {fillPath, {}}}, 2.25},
  };
  for (const auto& each : cases) {
    FilledShapes shapes;
    std::optional<FilledShape> filled;
    for (const Step& step : each.steps) {
      const std::string bytes = step.record();
      filled = shapes.next(MetafileRecord(bytes), drawnExtent(MetafileRecord(bytes)));
    }
    const std::size_t row = static_cast<std::size_t>(&each - cases);
    EXPECT_EQ(filled.value_or(FilledShape{}).crossings, each.crossings) << row;
    EXPECT_EQ(filled.value_or(FilledShape{}).work(10), each.crossings * each.crossings * 10) << row;
  }
}

// Without the records before it, and thus without a path.
TEST(FilledShapes, AreOnlyPolygonsWhereThereIsNoPath) {
  std::set<std::uint32_t> filling;
  for (const SampleMetafile& each : sampleMetafiles()) {
    for (const std::size_t place : recordPlaces(each.bytes)) {
      const MetafileRecord record(std::string_view(each.bytes).substr(place, numberAt(each.bytes, place + 4)));
      if (FilledShapes().next(record, drawnExtent(record))) {
        filling.insert(record.type());
      }
    }
  }
  EXPECT_EQ(filling, (std::set<std::uint32_t>{3, 8, 86, 91}));
}

}  // namespace
}  // namespace vernoxa::desktop
