#include "desktop/metafile_check.h"

#include <gmock/gmock.h>

#include "desktop/metafile_extent.h"
#include "desktop/metafile_rows.h"
#include "support/sample_metafiles.h"
#include "support/table.h"
#include "text/text.h"

namespace vernoxa::desktop {
namespace {

using testing::HasSubstr;

std::string faultOf(const std::string& metafile) {
  return metafileFault(metafile).value_or("sound");
}

std::string sample(std::string_view name) {
  for (const SampleMetafile& each : sampleMetafiles()) {
    if (each.name == name) {
      return each.bytes;
    }
  }
  return {};
}

TEST(MetafileCheck, TakesSoundMetafilesOfEveryKindOfRecord) {
  const auto samples = sampleMetafiles();
  for (const SampleMetafile& each : samples) {
    EXPECT_EQ(faultOf(each.bytes), "sound") << each.name;
    EXPECT_EQ(faultOf(each.bytes + "more bytes behind it"), "sound") << each.name;
  }
  for (std::uint32_t type = 2; type < 200; ++type) {
    const bool tried = std::any_of(samples.begin(), samples.end(), [type](const SampleMetafile& each) {
      return findRecord(each.bytes, type) != std::string::npos;
    });
    EXPECT_EQ(tried, findRecordRow(type) != nullptr) << type;
  }
}

TEST(MetafileCheck, RefusesOneThatIsCutAnywhere) {
  for (const SampleMetafile& each : sampleMetafiles()) {
    for (std::size_t length = 0; length < each.bytes.size(); ++length) {
      EXPECT_NE(faultOf(each.bytes.substr(0, length)), "sound") << each.name << " " << length;
      const std::string owning = withNumber(each.bytes.substr(0, length), 48, static_cast<std::uint32_t>(length));
      EXPECT_NE(faultOf(owning), "sound") << each.name << " " << length;
    }
  }
}

// One number of one record made a lie: the sample and the type of its record, whose first one is changed, then at which
// byte, the number, and what is told.
constexpr const char* lies = R"(
lines 1 | 0=2 no header | 4=84 no header | 40=7 no header | 48=100000 the size of the file
lines 1 | 48=1001 the size of the file | 48=108 no record ends it | 56=0 the table of objects
lines 1 | 56=2 record 3 at 144 (CREATEPEN): no such object | 60=8 the description | 88=1000 the pixel format
lines 37 | 4=0 a wrong size | 4=13 a wrong size | 4=4000 a wrong size | 4=0xFFFFFFFC a wrong size | 0=0 no known type
lines 37 | 0=1 no known type | 0=69 no known type | 0=123 no known type | 0=43 (RECTANGLE): too short
lines 37 | 0=14 (EOF): too short
mapping 34 | 0=14 (EOF): too short
palettes 112 | 0=14 behind the end
lines 14 | 8=6 the palette
lines 37 | 8=12 no such object | 8=0 no such object | 8=0x80000015 of the system's
lines 39 | 8=0 no such object
lines 38 | 8=1 made over another
lines 39 | 12=6 a brush
brushes 40 | 8=0x80000005 no such object
palettes 48 | 8=99 no such object
palettes 50 | 8=99 no such object
palettes 51 | 8=99 no such object
palettes 100 | 8=99 no such object
palettes 101 | 8=99 no such object
palettes 122 | 8=2 sound
regions 71 | 28=0x80000004 no such object
regions 72 | 28=12 no such object
texts 82 | 8=12 no such object
brushes 93 | 8=12 no such object
mapping 34 | 8=0 not saved | 8=1 not saved | 8=0xFFFFFFFD not saved | 8=0x80000000 not saved
lines 3 | 24=5 (POLYGON): it counts | 24=0x20000004 (POLYGON): it counts
lines 8 | 24=20 it counts | 28=7 it counts | 32=4 its shapes | 36=0xFFFFFFFF its shapes
lines 56 | 24=4 it counts
short_lines 86 | 24=5 it counts
short_lines 91 | 32=4 its shapes
short_lines 92 | 24=4 it counts
palettes 49 | 12=0x40300 it counts
palettes 50 | 16=3 it counts
palettes 51 | 12=1025 no possible size | 12=0 no possible size
palettes 113 | 12=5 it counts
palettes 121 | 20=0xFFFFFFFF it counts
comments 70 | 8=9 it counts
comments 103 | 24=5 it counts
comments 106 | 12=5 it counts
comments 110 | 16=5 it counts
comments 119 | 8=2 it counts
gradients 118 | 24=5 it counts | 28=3 it counts | 84=3 a corner
texts 83 | 44=9 a text | 48=93 a text | 72=81 the advances | 52=0x2000 the advances
texts 84 | 52=0x2000 the advances
texts 96 | 36=3 it counts | 48=9 a text | 76=96 the advances
texts 108 | 16=5 a text | 20=0x100 a text
regions 71 | 24=68 lies outside | 24=16 counts more
regions 73 | 28=31 no known form
regions 74 | 32=2 no known form | 36=3 counts more
regions 75 | 8=0 no known form
brushes 95 | 36=5 header of a bitmap | 36=7 a pen | 48=5 it counts | 16=100 a bitmap lies outside
brushes 94 | 16=1000 a bitmap lies outside | 28=1000 a bitmap lies outside | 20=12 header of a bitmap
brushes 94 | 20=44 the colours | 32=39 header of a bitmap | 36=0 no size | 36=9 fewer bits | 36=0x80000001 no size
brushes 94 | 40=9 fewer bits | 40=0xFFFFFFF8 sound | 40=0x80000000 fewer bits | 44=0x40002 no known format
brushes 94 | 44=0x50001 no known format | 44=0x200001 fewer bits | 48=1 no known format | 64=255 the colours
brushes 94 | 12=3 no known format
bitmaps 76 | 84=100 header of a bitmap | 12=0x10000 bounds far away
bitmaps 77 | 96=260 a bitmap lies outside
bitmaps 114 | 80=2 no known format | 116=4 more bits
bitmaps 78 | 112=4 header of a bitmap | 84=4 header of a bitmap
bitmaps 79 | 8=0x20000 bounds far away
image_formats 80 | 72=4 fewer bits | 60=71 fewer bits
)";

TEST(MetafileCheck, SaysWhichRecordLiesAboutWhat) {
  for (const auto& row : rowsOf(lies)) {
    const std::vector<std::string> names = splitItems(row[0], ' ');
    const std::string metafile = sample(names[0]);
    const std::size_t record = findRecord(metafile, static_cast<std::uint32_t>(std::stoul(names[1])));
    ASSERT_NE(record, std::string::npos) << row[0];
    for (std::size_t field = 1; field < row.size(); ++field) {
      const std::size_t sign = row[field].find('=');
      const std::size_t space = row[field].find(' ');
      const auto number = static_cast<std::uint32_t>(std::stoul(row[field].substr(sign + 1), nullptr, 0));
      EXPECT_THAT(faultOf(withNumber(metafile, record + std::stoul(row[field]), number)),
                  HasSubstr(row[field].substr(space + 1)))
          << row[0] << " " << row[field];
    }
  }
}

TEST(MetafileCheck, LooksIntoPackedBitmaps) {
  const std::string metafile = sample("image_formats");
  const std::size_t record = findRecord(metafile, 81);
  const std::string packed =
      metafile.substr(0, record) + metafile.substr(metafile.find(std::string("\x08\x05\0\0", 4)) - 80 - 64);
  const std::string only = withNumber(packed, 48, static_cast<std::uint32_t>(packed.size()));
  ASSERT_EQ(faultOf(only), "sound");
  const struct {
    std::size_t offset;
    std::uint32_t number;
    const char* told;
  } cases[] = {
      {84, 8001, "sound"},         // 8001 by 8000 points
      {84, 8000001, "too large"},  // few bytes, but asks for as much memory as it likes
      {100, 0, "fewer bytes"},
      {100, 17, "fewer bytes"},
      {100, 8, "within a run"},  // four points begin at its end
      {148, 0x03020005, "sound"},
      {144, 0xFE000508, "within a run"},
      {156, 0x02000403, "within a run"},
  };
  for (const auto& each : cases) {
    std::string changed = withNumber(only, record + each.offset, each.number);
    changed = each.offset == 84 ? withNumber(changed, record + 88, each.number > 8001 ? 8 : 7998) : changed;
    EXPECT_THAT(faultOf(changed), HasSubstr(each.told)) << each.offset << " " << each.number;
  }
}

TEST(MetafileCheck, LooksIntoComments) {
  const std::string metafile = sample("comments");
  const struct {
    const char* comment;  // how its data begins
    std::size_t offset;   // in the data
    std::uint32_t number;
    const char* told;
  } cases[] = {
      {"GDIC\2", 24, 5, "the name of a group"},
      {"GDIC\4", 24, 20, "more formats"},
      {"GDIC\4", 36, 4000, "a format within"},
      {"GDIC\4", 36, 100, "a metafile within"},
      {"GDIC\4", 44 + 112, 0, "a metafile within"},
      {"GDIC\4", 28, 0, "sound"},  // of another kind, into which nobody looks
      {"GDIC\1", 20, 9, "an older metafile"},
      {"EMF+", 8, 8, "a newer record"},
      {"EMF+", 8, 48, "a newer record"},
      {"EMF+", 8, 30, "a newer record"},
      {"EMF+", 12, 17, "a newer record"},
      {"EMF+", 36, 16, "a newer record"},
  };
  for (const auto& each : cases) {
    const std::size_t data = metafile.find(each.comment);
    ASSERT_NE(data, std::string::npos) << each.comment;
    EXPECT_THAT(faultOf(withNumber(metafile, data + each.offset, each.number)), HasSubstr(each.told))
        << each.comment << " " << each.offset;
  }
}

TEST(MetafileCheck, EndsForMetafilesWithinEachOther) {
  std::string within = sample("comments");
  const std::size_t place = findRecord(within, 70);
  for (int depth = 0; depth < 8; ++depth) {
    std::string data = "GDIC" + std::string(20, '\0') + std::string(20, '\0') + within;
    data = withNumber(data, 4, 0x40000004);
    data = withNumber(withNumber(data, 24, 1), 28, 0x464D4520);
    data = withNumber(withNumber(data, 36, static_cast<std::uint32_t>(within.size())), 40, 44);
    std::string record =
        withNumber(withNumber(std::string(12, '\0') + data, 0, 70), 8, static_cast<std::uint32_t>(data.size()));
    record = withNumber(record, 4, static_cast<std::uint32_t>(record.size()));
    std::string outer = sample("comments").insert(place, record);
    within = withNumber(outer, 48, static_cast<std::uint32_t>(outer.size()));
    EXPECT_EQ(faultOf(within) == "sound", depth < 3) << depth;
  }
}

// What is drawn far out is never played; points are found in every kind of record that has some.
TEST(DrawnExtent, HoldsEveryPointOfARecord) {
  const struct {
    const char* sample;
    std::uint32_t type;
    DrawnExtent extent;
  } cases[] = {
      {"lines", 2, {10, 10, 90, 90}},          {"lines", 7, {10, 10, 90, 90}},
      {"lines", 8, {10, 10, 90, 90}},          {"lines", 15, {50, 50, 50, 50}},
      {"lines", 54, {95, 5, 95, 5}},           {"lines", 41, {30, 30, 70, 70}},
      {"lines", 44, {30, 30, 90, 90}},         {"lines", 46, {10, 10, 90, 60}},
      {"lines", 56, {10, 10, 90, 90}},         {"short_lines", 85, {10, 10, 90, 90}},
      {"short_lines", 91, {10, 10, 90, 90}},   {"short_lines", 92, {10, 10, 90, 90}},
      {"regions", 71, {10, 10, 90, 90}},       {"regions", 72, {10, 10, 90, 90}},
      {"regions", 73, {10, 10, 90, 90}},       {"regions", 75, {10, 10, 90, 90}},
      {"bitmaps", 76, {10, 10, 70, 70}},       {"bitmaps", 79, {10, 10, 60, 60}},
      {"image_formats", 80, {60, 60, 68, 68}}, {"image_formats", 81, {10, 10, 50, 50}},
      {"texts", 84, {20, 30, 20, 30}},         {"texts", 97, {20, 30, 20, 30}},
      {"gradients", 118, {10, 10, 90, 90}},
  };
  for (const auto& each : cases) {
    const std::string metafile = sample(each.sample);
    const std::size_t place = findRecord(metafile, each.type);
    const MetafileRecord head(std::string_view(metafile).substr(place));
    const auto extent = drawnExtent(MetafileRecord(head.part(0, head.number(4)))).value_or(DrawnExtent{});
    EXPECT_EQ(extent.left, each.extent.left) << each.type;
    EXPECT_EQ(extent.top, each.extent.top) << each.type;
    EXPECT_EQ(extent.right, each.extent.right) << each.type;
    EXPECT_EQ(extent.bottom, each.extent.bottom) << each.type;
  }
  EXPECT_FALSE(drawnExtent(MetafileRecord(std::string_view("\x25\0\0\0\x0C\0\0\0\1\0\0\0", 12))).has_value());
}

}  // namespace
}  // namespace vernoxa::desktop
