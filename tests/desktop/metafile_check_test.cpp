#include "desktop/metafile_check.h"

#include <gmock/gmock.h>

#include <set>

#include "desktop/metafile_extent.h"
#include "desktop/metafile_rows.h"
#include "support/sample_metafiles.h"
#include "support/table.h"
#include "text/text.h"

namespace vernoxa::desktop {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

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

// Numbers of one record made a lie: the sample and the type of its record, whose first one is changed, then at which
// bytes (behind its end lie the next ones), the numbers, and how what is told ends.
constexpr const char* lies = R"(
lines 1 | 0=2 no header of a metafile | 4=84 no header of a metafile | 40=7 no header of a metafile
lines 1 | 48=100000 the size of the file is wrong | 48=1001 the size of the file is wrong | 48=108 no record ends it
lines 1 | 56=0 the table of objects is too small | 56=2 record 3 at 144 (CREATEPEN): no such object
lines 1 | 88=4,92=1000 the pixel format lies outside
lines 1 | 60=8 the description lies outside | 88=1000 the pixel format lies outside | 88=4,92=100 sound | 92=1000 sound
lines 1 | 4=100,100=28,104=8 sound | 4=100,100=28,104=8,88=4,92=1000 the pixel format lies outside
lines 37 | 4=0 a wrong size | 4=4 a wrong size | 4=13 a wrong size
lines 37 | 4=4000 a wrong size | 4=0xFFFFFFFC a wrong size | 0=0 no known type
lines 37 | 0=1 no known type | 0=69 no known type | 0=123 no known type | 0=43 (RECTANGLE): too short
lines 37 | 0=14 (EOF): too short | 8=12 no such object | 8=0 no such object | 8=0x80000015 of the system's
lines 37 | 8=0x80000014 sound
mapping 34 | 0=14 (EOF): too short | 8=0 not saved | 8=1 not saved | 8=0xFFFFFFFD not saved | 8=0x80000000 not saved
palettes 112 | 0=14 behind the end
lines 14 | 8=6 the palette lies outside
lines 39 | 8=0 no such object | 12=6 a brush is of no known style
lines 38 | 8=1 made over another
brushes 40 | 8=0x80000005 no such object
palettes 48 | 8=99 no such object
palettes 50 | 8=99 no such object | 16=3 counts more than it holds
palettes 51 | 8=99 no such object | 12=1025 no possible size | 12=0 no possible size | 12=1024 sound
palettes 100 | 8=99 no such object
palettes 101 | 8=99 no such object
palettes 122 | 8=2 sound | 604=1 counts more than it holds
regions 71 | 28=0x80000004 no such object | 24=68 a region lies outside | 24=16 a region counts more than it holds
regions 72 | 28=12 no such object
texts 82 | 8=12 no such object | 704=0x08007664,708=2 sound | 704=0x08007664,708=3 counts more than it holds
texts 82 | 704=0,708=99 sound
brushes 93 | 8=12 no such object | 12=0,64=3 colours of a bitmap lie outside | 12=2,64=30 sound
brushes 93 | 12=2,44=0x80001,48=1 no known format | 12=2,32=12,36=0x80008,40=0x10001 no known format
brushes 93 | 36=32 sound | 36=33 fewer bits than its size needs
lines 3 | 24=5 (POLYGON): it counts more than it holds | 24=0x20000004 (POLYGON): it counts more than it holds
lines 8 | 24=20 counts more than it holds | 28=7 counts more than it holds | 32=4 more points than it holds
lines 8 | 36=0xFFFFFFFF more points than it holds
lines 56 | 24=4 counts more than it holds
short_lines 86 | 24=5 counts more than it holds
short_lines 91 | 32=4 more points than it holds
short_lines 92 | 24=4 counts more than it holds
palettes 49 | 12=0x40300 counts more than it holds
palettes 113 | 12=5 counts more than it holds
palettes 121 | 20=0xFFFFFFFF counts more than it holds
comments 70 | 8=9 counts more than it holds | 56=5 name of a group lies outside | 124=20 more formats than it holds
comments 70 | 124=2,152=4000 a format within a comment lies outside
comments 70 | 124=2,128=0,136=0,152=196,156=0 sound | 124=2,128=0,136=1,152=196,156=0 formats within a comment overlap
comments 70 | 124=2,152=1,156=4000 a format within a comment lies outside
comments 70 | 136=4000 a format within a comment lies outside | 136=100 a metafile within a comment is broken
comments 70 | 256=0 a metafile within a comment is broken | 128=0 sound
comments 70 | 328=9 older metafile within a comment lies outside
comments 70 | 360=8 newer record within a comment has a wrong size
comments 70 | 360=48 newer record within a comment has a wrong size
comments 70 | 360=30 newer record within a comment has a wrong size
comments 70 | 364=17 newer record within a comment has a wrong size
comments 70 | 388=16 newer record within a comment has a wrong size
comments 103 | 24=5 counts more than it holds
comments 106 | 12=5 counts more than it holds
comments 110 | 16=5 counts more than it holds
comments 119 | 8=2 counts more than it holds
gradients 118 | 24=5 counts more than it holds | 28=3 counts more than it holds | 84=3 a corner that is not there
texts 83 | 44=9 advances of a text lie outside | 48=93 a text lies outside | 72=81 advances of a text lie outside
texts 83 | 52=0x2000 advances of a text lie outside
texts 84 | 52=0x2000 advances of a text lie outside
texts 83 | 52=92 sound
texts 84 | 52=92 sound
texts 97 | 52=96 sound
texts 96 | 52=96 sound | 36=0,48=9 sound | 4=204,36=2,88=0,92=99999 sound
texts 96 | 36=3 counts more than it holds | 48=9 advances of a text lie outside | 76=96 advances of a text lie outside
texts 108 | 16=5 a text lies outside | 20=0x100 a text lies outside | 20=0x200 a text lies outside
texts 108 | 56=5 a text lies outside
regions 73 | 28=31 a region is of no known form | 4=184,24=72,36=3 counts more than it holds | 4=184,24=80,36=3 sound
regions 74 | 32=2 a region is of no known form | 36=3 a region counts more than it holds
regions 75 | 8=0 a region is of no known form
brushes 95 | 36=5 bitmap has no known size | 36=7 a pen is of no known style | 48=5 counts more than it holds
brushes 95 | 16=100 a bitmap lies outside | 20=9999 a bitmap lies outside | 24=9999 a bitmap lies outside
brushes 94 | 16=1000 a bitmap lies outside | 28=1000 a bitmap lies outside | 20=12 bitmap has no known size
brushes 94 | 20=44 colours of a bitmap lie outside | 32=39 bitmap has no known size | 36=0 a bitmap has no size
brushes 94 | 36=9 fewer bits than its size needs | 36=0x80000001 a bitmap has no size
brushes 94 | 40=9 fewer bits than its size needs | 40=0xFFFFFFF8 sound | 40=0x80000000 fewer bits than its size needs
brushes 94 | 44=0x40002 a bitmap is of no known format | 44=0x50001 a bitmap is of no known format
brushes 94 | 44=0x200001 fewer bits than its size needs | 48=1 a bitmap is of no known format
brushes 94 | 48=2,52=8,136=0x900 sound | 48=2,52=7,136=0x900 ends within a run | 48=1,52=8 of no known format
brushes 94 | 32=12,36=0x80008,40=0x40001 sound | 32=12,36=0x90008,40=0x40001 fewer bits than its size needs
brushes 94 | 32=12,36=0x80009,40=0x40001 fewer bits than its size needs
brushes 94 | 20=60,32=12,36=0x80008,40=0x40001 sound | 20=56,32=12,36=0x80008,40=0x40001 colours of a bitmap lie outside
brushes 94 | 64=17 colours of a bitmap lie outside | 12=2,64=17 sound | 12=3 a bitmap is of no known format
bitmaps 76 | 84=100 bitmap has no known size | 88=40 no known size | 92=40 no known size | 96=4 no known size
bitmaps 76 | 12=0x10000 no bitmap, and bounds far away
bitmaps 77 | 96=260 a bitmap lies outside
bitmaps 114 | 80=2 a bitmap is of no known format | 116=4 more bits than its size has room for
bitmaps 78 | 112=4 bitmap has no known size | 84=4 bitmap has no known size
bitmaps 79 | 8=0x20000 no bitmap, and bounds far away
image_formats 80 | 72=4 fewer bits than its size needs | 60=71 fewer bits than its size needs
bitmaps 77 | 44=0x400001 far away | 48=0xFFBFFFFF far away | 100=0x400001 far away | 104=0x400001 far away
bitmaps 77 | 0=76,32=0x400001 far away | 0=76,36=0x400001 far away | 0=76,100=0x400001,32=1 sound
bitmaps 77 | 52=0x4E6E6B28 far away | 64=0x4E6E6B28 far away | 68=0x4E6E6B28 far away | 72=0xCE6E6B28 far away
bitmaps 77 | 56=0x4E6E6B28 far away | 60=0x4E6E6B28 far away | 52=0x7F800000 far away | 52=0x7FC00000 far away
bitmaps 77 | 52=0x41800000 sound | 52=0,64=0 sound | 44=0x300000,100=0x200000 far away
bitmaps 77 | 44=0x300000,100=0x100000 sound
bitmaps 77 | 100=40,104=40,52=0x4788B800,60=0x4788B800 far away | 100=40,52=0x4788B800,68=0x4A2AE600 far away
bitmaps 77 | 100=40,104=40,56=0x4788B800,64=0x4788B800 far away | 104=40,64=0x4788B800,72=0x4A2AE600 far away
bitmaps 78 | 44=0x400001 far away | 32=0x400001 far away | 68=0x4E6E6B28 far away | 100=0x400001 sound
bitmaps 79 | 48=0x400001 far away | 56=0x400001 far away | 80=0x4E6E6B28 far away | 52=0x3FFFC0 sound
bitmaps 114 | 48=0x400001 far away | 104=0x400001 far away | 72=0x4E6E6B28 far away
bitmaps 116 | 48=0x400001 far away | 104=0x400001 far away | 72=0x4E6E6B28 far away
image_formats 80 | 36=0x400001 far away | 44=0x400001 far away
image_formats 81 | 32=0x400001 far away | 40=0x7FFFFFFF far away | 44=0x3FFFF8 sound
short_lines 90 | 24=4,28=3 more points than it holds
image_formats 81 | 452=8000,456=8000 sound | 452=8000001,456=8 a packed bitmap is too large
image_formats 81 | 92=1,96=4 sound | 92=1,96=5 sound | 92=1,96=6 of no known format | 92=0x180001,96=4 sound
image_formats 81 | 468=0 fewer bytes than it says | 468=17 fewer bytes than it says | 468=8 ends within a run
image_formats 81 | 512=0xFF000400,516=0x0200FF00 sound
image_formats 81 | 516=0x03020005 sound | 512=0xFE000508 ends within a run | 524=0x02000403 ends within a run
)";

TEST(MetafileCheck, SaysWhichRecordLiesAboutWhat) {
  for (const auto& row : rowsOf(lies)) {
    const std::vector<std::string> names = splitItems(row[0], ' ');
    const std::string metafile = sample(names[0]);
    const std::size_t record = findRecord(metafile, static_cast<std::uint32_t>(std::stoul(names[1])));
    ASSERT_NE(record, std::string::npos) << row[0];
    for (std::size_t field = 1; field < row.size(); ++field) {
      const std::size_t space = row[field].find(' ');
      std::string changed = metafile;
      for (const std::string& change : splitItems(row[field].substr(0, space), ',')) {
        const auto number = static_cast<std::uint32_t>(std::stoul(change.substr(change.find('=') + 1), nullptr, 0));
        changed = withNumber(changed, record + std::stoul(change), number);
      }
      EXPECT_THAT(faultOf(changed), EndsWith(row[field].substr(space + 1))) << row[0] << " " << row[field];
    }
  }
}

// The least bytes of a record, its type, and what the log calls it. What is shorter is refused, the rest is looked
// into.
constexpr const char* leastBytes = R"(
8 | 28 SETMETARGN | 33 SAVEDC | 52 REALIZEPALETTE | 59 BEGINPATH | 60 ENDPATH | 61 CLOSEFIGURE | 65 FLATTENPATH
8 | 66 WIDENPATH | 68 ABORTPATH
12 | 16 SETMAPPERFLAGS | 17 SETMAPMODE | 18 SETBKMODE | 19 SETPOLYFILLMODE | 20 SETROP2 | 21 SETSTRETCHBLTMODE
12 | 22 SETTEXTALIGN | 24 SETTEXTCOLOR | 25 SETBKCOLOR | 34 RESTOREDC | 37 SELECTOBJECT | 40 DELETEOBJECT
12 | 48 SELECTPALETTE | 57 SETARCDIRECTION | 58 SETMITERLIMIT | 67 SELECTCLIPPATH | 70 COMMENT | 98 SETICMMODE
12 | 100 SETCOLORSPACE | 101 DELETECOLORSPACE | 102 GLSRECORD | 115 SETLAYOUT | 119 SETLINKEDUFIS
16 | 9 SETWINDOWEXTEX | 10 SETWINDOWORGEX | 11 SETVIEWPORTEXTEX | 12 SETVIEWPORTORGEX | 13 SETBRUSHORGEX
16 | 26 OFFSETCLIPRGN | 27 MOVETOEX | 49 CREATEPALETTE | 51 RESIZEPALETTE | 54 LINETO | 75 EXTSELECTCLIPRGN
16 | 105 DRAWESCAPE | 106 EXTESCAPE | 109 FORCEUFIMAPPING | 120 SETTEXTJUSTIFICATION
20 | 14 EOF | 15 SETPIXELV | 50 SETPALETTEENTRIES | 110 NAMEDESCAPE | 112 SETICMPROFILEA | 113 SETICMPROFILEW
24 | 29 EXCLUDECLIPRECT | 30 INTERSECTCLIPRECT | 31 SCALEVIEWPORTEXTEX | 32 SCALEWINDOWEXTEX | 39 CREATEBRUSHINDIRECT
24 | 42 ELLIPSE | 43 RECTANGLE | 53 EXTFLOODFILL | 62 FILLPATH | 63 STROKEANDFILLPATH | 64 STROKEPATH
24 | 111 COLORCORRECTPALETTE | 121 COLORMATCHTOTARGETW
28 | 2 POLYBEZIER | 3 POLYGON | 4 POLYLINE | 5 POLYBEZIERTO | 6 POLYLINETO | 38 CREATEPEN | 41 ANGLEARC | 56 POLYDRAW
28 | 73 INVERTRGN | 74 PAINTRGN | 85 POLYBEZIER16 | 86 POLYGON16 | 87 POLYLINE16 | 88 POLYBEZIERTO16 | 89 POLYLINETO16
28 | 92 POLYDRAW16 | 103 GLSBOUNDEDRECORD
32 | 7 POLYPOLYLINE | 8 POLYPOLYGON | 23 SETCOLORADJUSTMENT | 35 SETWORLDTRANSFORM | 44 ROUNDRECT | 71 FILLRGN
32 | 90 POLYPOLYLINE16 | 91 POLYPOLYGON16 | 93 CREATEMONOBRUSH | 94 CREATEDIBPATTERNBRUSHPT
36 | 36 MODIFYWORLDTRANSFORM | 108 SMALLTEXTOUT | 118 GRADIENTFILL
40 | 45 ARC | 46 CHORD | 47 PIE | 55 ARCTO | 72 FRAMERGN | 96 POLYTEXTOUTA | 97 POLYTEXTOUTW
48 | 104 PIXELFORMAT
52 | 95 EXTCREATEPEN
76 | 80 SETDIBITSTODEVICE | 83 EXTTEXTOUTA | 84 EXTTEXTOUTW
80 | 81 STRETCHDIBITS
100 | 76 BITBLT
104 | 82 EXTCREATEFONTINDIRECTW
108 | 77 STRETCHBLT | 114 ALPHABLEND | 116 TRANSPARENTBLT
128 | 78 MASKBLT
140 | 79 PLGBLT
340 | 99 CREATECOLORSPACE
608 | 122 CREATECOLORSPACEW
)";

TEST(MetafileCheck, KnowsTheLeastBytesOfEachRecord) {
  const auto samples = sampleMetafiles();
  for (const auto& row : rowsOf(leastBytes)) {
    const auto bytes = static_cast<std::uint32_t>(std::stoul(row[0]));
    for (std::size_t field = 1; field < row.size(); ++field) {
      const auto type = static_cast<std::uint32_t>(std::stoul(row[field]));
      const auto faultWith = [&](std::uint32_t size) {
        std::string record = withNumber(withNumber(std::string(size, '\0'), 0, type), 4, size);
        const std::string metafile = samples.front().bytes.substr(0, 108) + record;
        return faultOf(withNumber(metafile, 48, static_cast<std::uint32_t>(metafile.size())));
      };
      const std::string name = "(" + row[field].substr(row[field].find(' ') + 1) + "): ";
      EXPECT_THAT(faultWith(bytes), Not(HasSubstr("too short"))) << row[field];
      EXPECT_THAT(faultWith(bytes - 4), bytes == 8 ? EndsWith("a wrong size") : EndsWith(name + "too short"));
    }
  }
}

// The metafile with more bytes at the end of a record.
std::string withRoom(std::string metafile, std::size_t place, std::uint32_t more) {
  const std::uint32_t bytes = MetafileRecord(std::string_view(metafile).substr(place)).number(4);
  metafile.insert(place + bytes, more, '\0');
  metafile = withNumber(metafile, place + 4, bytes + more);
  return withNumber(metafile, 48, static_cast<std::uint32_t>(metafile.size()));
}

// One text may come without its advances, each of many may not. So many characters that the record's own head is too
// short to stand for them.
TEST(MetafileCheck, AsksForTheAdvancesOfManyTexts) {
  constexpr std::uint32_t characters = 100;
  for (const auto& [type, text] : {std::pair{84U, 36U}, std::pair{97U, 40U}}) {
    const std::size_t place = findRecord(sample("texts"), type);
    std::string metafile = withRoom(sample("texts"), place, 2 * characters);
    const auto bytes = MetafileRecord(std::string_view(metafile).substr(place)).number(4);
    metafile = withNumber(metafile, place + text + 8, characters);
    metafile = withNumber(metafile, place + text + 12, bytes - 2 * characters);
    EXPECT_THAT(faultOf(withNumber(metafile, place + text + 36, 0)),
                EndsWith(type == 84 ? "sound" : "the advances of a text lie outside"));
  }
}

TEST(MetafileCheck, TakesFontsOfSixteenAxes) {
  const std::size_t place = findRecord(sample("texts"), 82) + 344;  // a new form of font, behind an old one
  const std::string metafile = withNumber(withRoom(sample("texts"), place, 100), place + 360, 0x08007664);
  EXPECT_EQ(faultOf(withNumber(metafile, place + 364, 16)), "sound");
  EXPECT_THAT(faultOf(withNumber(metafile, place + 364, 17)), EndsWith("counts more than it holds"));
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
    std::uint32_t regions = 0;  // as many as the record counts, if none are said
  } cases[] = {
      {"lines", 2, {10, 10, 90, 90}},          {"lines", 7, {10, 10, 90, 90}},
      {"lines", 8, {10, 10, 90, 90}},          {"lines", 15, {50, 50, 50, 50}},
      {"lines", 54, {95, 5, 95, 5}},           {"lines", 41, {30, 30, 70, 70}},
      {"lines", 44, {30, 30, 90, 90}},         {"lines", 46, {10, 10, 90, 60}},
      {"lines", 56, {10, 10, 90, 90}},         {"short_lines", 85, {10, 10, 90, 90}},
      {"short_lines", 90, {10, 10, 90, 90}},   {"short_lines", 91, {10, 10, 90, 90}},
      {"short_lines", 92, {10, 10, 90, 90}},   {"regions", 71, {10, 10, 90, 90}},
      {"regions", 72, {10, 10, 90, 90}},       {"regions", 73, {10, 10, 90, 90}},
      {"regions", 75, {10, 10, 90, 90}},       {"bitmaps", 76, {10, 10, 70, 70}},
      {"bitmaps", 79, {10, 10, 60, 60}},       {"image_formats", 80, {60, 60, 68, 68}},
      {"image_formats", 81, {10, 10, 50, 50}}, {"texts", 84, {20, 30, 20, 30}},
      {"texts", 97, {20, 30, 20, 30}},         {"gradients", 118, {10, 10, 90, 90}},
      {"regions", 75, {10, 10, 40, 40}, 1},
  };
  for (const auto& each : cases) {
    const std::string metafile = sample(each.sample);
    const std::size_t place = findRecord(metafile, each.type);
    const std::uint32_t bytes = MetafileRecord(std::string_view(metafile).substr(place)).number(4);
    std::string record = metafile.substr(place, bytes);
    if (each.regions != 0) {
      record = withNumber(record, 24, each.regions);
    }
    const auto extent = drawnExtent(MetafileRecord(record)).value_or(DrawnExtent{});
    EXPECT_EQ(extent.left, each.extent.left) << each.type;
    EXPECT_EQ(extent.top, each.extent.top) << each.type;
    EXPECT_EQ(extent.right, each.extent.right) << each.type;
    EXPECT_EQ(extent.bottom, each.extent.bottom) << each.type;
  }
}

TEST(DrawnExtent, IsNotAllThatPathsAndTextsDraw) {
  const std::set<std::uint32_t> paths = {62, 63, 64, 65, 66};
  const std::set<std::uint32_t> texts = {83, 84, 96, 97, 108};
  for (std::uint32_t type = 2; type < 200; ++type) {
    const std::string bytes = withNumber(std::string(8, '\0'), 0, type);
    EXPECT_EQ(drawsPath(MetafileRecord(bytes)), paths.contains(type)) << type;
    EXPECT_EQ(drawsText(MetafileRecord(bytes)), texts.contains(type)) << type;
  }
}

}  // namespace
}  // namespace vernoxa::desktop
