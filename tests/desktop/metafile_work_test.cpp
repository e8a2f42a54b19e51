#include "desktop/metafile_work.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/sample_metafiles.h"

namespace vernoxa::desktop {
namespace {

constexpr std::uint32_t polygon = 3;
constexpr std::uint32_t polylineTo = 6;
constexpr std::uint32_t lineTo = 54;
constexpr std::uint32_t beginPath = 59;
constexpr std::uint32_t fillPath = 62;
constexpr std::uint32_t strokeAndFillPath = 63;
constexpr std::uint32_t strokePath = 64;
constexpr std::uint32_t selectClipPath = 67;

struct Step {
  std::uint32_t type;
  std::vector<std::uint32_t> numbers;  // x, y, x, y ...
};

std::string recordOf(const Step& step) {
  const std::size_t first = step.type == lineTo ? 8 : 28;
  std::string record = withNumber(std::string(first + step.numbers.size() * 4, '\0'), 0, step.type);
  record = withNumber(record, 24, static_cast<std::uint32_t>(step.numbers.size() / 2));
  for (std::size_t index = 0; index < step.numbers.size(); ++index) {
    record = withNumber(record, first + index * 4, step.numbers[index]);
  }
  return record;
}

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
  };
  for (const auto& each : cases) {
    FilledShapes shapes;
    std::optional<FilledShape> filled;
    for (const Step& step : each.steps) {
      const std::string bytes = recordOf(step);
      filled = shapes.next(MetafileRecord(bytes), drawnExtent(MetafileRecord(bytes)));
    }
    const std::size_t row = static_cast<std::size_t>(&each - cases);
    EXPECT_EQ(filled.value_or(FilledShape{}).crossings, each.crossings) << row;
    EXPECT_EQ(filled.value_or(FilledShape{}).work(10), each.crossings * each.crossings * 10) << row;
  }
}

}  // namespace
}  // namespace vernoxa::desktop
