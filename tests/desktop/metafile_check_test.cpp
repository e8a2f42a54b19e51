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

std::uint32_t numberOf(const std::string& word) {
  return static_cast<std::uint32_t>(std::stoul(word, nullptr, 0));
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

// The metafile with more bytes at the end of a record.
std::string withRoom(std::string metafile, std::size_t place, std::uint32_t more) {
  const std::uint32_t bytes = numberAt(metafile, place + 4);
  metafile.insert(place + bytes, more, '\0');
  metafile = withNumber(metafile, place + 4, bytes + more);
  return withNumber(metafile, 48, static_cast<std::uint32_t>(metafile.size()));
}

// But where nothing counts these: behind a font, the advances of glyphs, and the corners of a rectangle.
TEST(MetafileCheck, RefusesARecordThatEndsFourBytesEarlier) {
  std::string sound;
  for (const SampleMetafile& each : sampleMetafiles()) {
    for (const std::size_t place : recordPlaces(each.bytes)) {
      const std::uint32_t bytes = numberAt(each.bytes, place + 4);
      if (place == 0 || bytes == 8) {
        continue;  // the header; a record that has nothing but its size
      }
      std::string cut = withNumber(each.bytes, place + 4, bytes - 4).erase(place + bytes - 4, 4);
      cut = withNumber(cut, 48, static_cast<std::uint32_t>(cut.size()));
      if (faultOf(cut) == "sound") {
        sound += each.name + (" " + std::to_string(place)) + "\n";
      }
    }
  }
  EXPECT_EQ(sound, "texts 108\ntexts 1204\ngradients 108\n");
}

// A sample, then lies about its first record of a type: the type, which numbers at which bytes ("+": so many more;
// behind the record lie the next ones), and how what is told ends. Most numbers that count are in
// metafile_numbers_test.cpp.
constexpr const char* lies = R"(
lines | 1 0=2 no header of a metafile | 1 4=84 no header of a metafile | 1 40=7 no header of a metafile
lines | 1 48=108 no record ends it | 1 48=100000 the size of the file is wrong | 1 48=1001 size of the file is wrong
lines | 1 56=0 the table of objects is too small | 1 56=2 record 3 at 144 (CREATEPEN): no such object
lines | 1 60=8 the description lies outside | 1 88=4,92=1000 the pixel format lies outside | 1 92=1000 sound
lines | 1 88=1000 the pixel format lies outside | 1 88=4,92=100 sound | 1 4=100,100=28,104=8 sound
lines | 1 4=100,100=28,104=8,88=4,92=1000 the pixel format lies outside | 14 8=6 the palette lies outside
lines | 1 +8,60=4,64=108 sound | 1 +8,60=5,64=108 the description lies outside | 1 60=10,64=88 sound
lines | 1 60=4,64=96,88=4,92=1000 sound | 1 60=4,64=100,88=4,92=1000 the pixel format lies outside
lines | 1 4=88,88=17,92=20 sound | 1 4=96,88=4,92=1000,96=17,100=12 sound
lines | 14 8=1 sound | 14 8=1,12=1000 the palette lies outside
lines | 37 4=0 record 2 at 132: a wrong size | 37 4=4 a wrong size | 37 4=13 a wrong size | 37 4=4000 a wrong size
lines | 37 4=0xFFFFFFFC a wrong size | 37 0=0 record 2 at 132: no known type | 37 0=1 no known type
lines | 37 0=69 no known type | 37 0=123 no known type | 37 8=12 no such object | 37 8=0 no such object
lines | 37 8=0x80000014 sound | 37 8=0x80000015 of the system's | 38 8=1 made over another
lines | 39 12=6 a brush is of no known style
lines | 3 24=0x20000004 (POLYGON): it counts more than it holds | 8 32=4 its shapes have more points than it holds
lines | 8 36=0xFFFFFFFF more points than it holds
short_lines | 90 24=4,28=3 more points than it holds
lines | 8 24=3,28=6 it counts more than it holds | 8 24=3,28=5,32=1,36=1 its shapes have more points than it holds
mapping | 34 8=0xFFFFFFFE sound | 34 8=0xFFFFFFFE,24=34,32=0xFFFFFFFE not saved
mapping | 34 8=0 not saved | 34 8=1 not saved | 34 8=0xFFFFFFFD not saved | 34 8=0x80000000 not saved
palettes | 112 0=14 behind the end | 51 12=1025 no possible size | 51 12=0 no possible size | 51 12=1024 sound
palettes | 49 12=0x40300 counts more than it holds | 121 20=0xFFFFFFFF counts more than it holds
brushes | 40 8=0x80000005 no such object | 93 12=0,64=3 colours of a bitmap lie outside | 93 12=2,64=30 sound
brushes | 93 12=2,44=0x80001,48=1 no known format | 93 12=2,32=12,36=0x80008,40=0x10001 no known format
brushes | 93 36=32 sound | 93 36=33 fewer bits than its size needs | 94 48=2,52=7,136=0x900 ends within a run
brushes | 94 16=1000 a bitmap lies outside | 94 28=1000 a bitmap lies outside | 94 20=12 bitmap has no known size
brushes | 94 20=44 colours of a bitmap lie outside | 94 32=39 bitmap has no known size | 94 36=0 a bitmap has no size
brushes | 94 36=9 fewer bits than its size needs | 94 36=0x80000001 a bitmap has no size | 94 40=0xFFFFFFF8 sound
brushes | 94 36=0x7FFFFFFF fewer bits than its size needs | 94 40=0xFFFFFFF7 fewer bits than its size needs
brushes | 94 40=9 fewer bits than its size needs | 94 40=0x80000000 fewer bits than its size needs
brushes | 94 44=0x40002 a bitmap is of no known format | 94 44=0x50001 no known format | 94 48=1 no known format
brushes | 94 44=0x200001 fewer bits than its size needs | 94 48=2,52=8,136=0x900 sound | 94 48=1,52=8 no known format
brushes | 94 32=12,36=0x80008,40=0x40001,44=0 sound | 94 32=12,36=0x90008,40=0x40001 fewer bits than its size needs
brushes | 94 20=60,32=12,36=0x80008,40=0x40001 sound | 94 32=12,36=0x80009,40=0x40001 fewer bits than its size needs
brushes | 94 20=56,32=12,36=0x80008,40=0x40001 colours of a bitmap lie outside | 94 12=2,64=17 sound
brushes | 94 12=1,20=72 sound | 94 12=1,20=68 colours of a bitmap lie outside
brushes | 94 44=0x80001 colours of a bitmap lie outside
brushes | 94 +1024,20=1064,64=257 sound | 94 +1024,20=1060,64=257 colours of a bitmap lie outside
brushes | 94 64=17 colours of a bitmap lie outside | 94 12=3 no known format | 95 36=7 a pen is of no known style
brushes | 95 36=5 bitmap has no known size | 95 16=100 a bitmap lies outside | 95 20=9999 a bitmap lies outside
brushes | 95 24=9999 a bitmap lies outside | 95 36=2 sound | 95 36=3 bitmap has no known size
brushes | 95 36=6 bitmap has no known size | 95 168=3,172=3 sound | 95 168=3,148=100 of a bitmap lie outside
regions | 71 24=68 a region lies outside | 73 32=2 a region is of no known form | 75 8=0 a region is of no known form
regions | 73 4=184,24=72,36=3 a region counts more than it holds | 73 4=184,24=80,36=3 sound
regions | 75 4=20,8=0,12=5,20=17,24=60 sound | 75 4=24,8=0,12=5,24=17,28=56 a region is of no known form
comments | 70 56=5 name of a group lies outside | 70 124=20 more formats than it holds | 70 128=0 sound
comments | 70 124=2,152=4000 a format within a comment lies outside | 70 136=4000 within a comment lies outside
comments | 70 124=2,152=1,156=4000 within a comment lies outside | 70 124=2,128=0,136=0,152=196,156=0 sound
comments | 70 124=2,128=0,136=1,152=196,156=0 formats within a comment overlap | 70 256=0 within a comment is broken
comments | 70 136=100 a metafile within a comment is broken | 70 328=9 older metafile within a comment lies outside
comments | 70 360=8 newer record within a comment has a wrong size | 70 360=48 comment has a wrong size
comments | 70 348=40 sound | 70 360=30 has a wrong size | 70 364=17 has a wrong size | 70 388=16 has a wrong size
texts | 82 +104,360=0x08007664,364=16 sound | 82 +104,360=0x08007664,364=17 counts more than it holds
texts | 82 +36,360=0x08007664,364=1 counts more than it holds | 82 +32,360=0x08007664 sound | 82 +104,364=17 sound
texts | 82 704=0,708=99 sound | 83 48=93 a text lies outside | 83 52=92 sound | 97 52=96 sound | 96 52=96 sound
texts | 83 52=0x2000 advances of a text lie outside | 96 36=0,48=9 sound | 96 4=204,36=2,84=99999,88=0,92=99999 sound
texts | 84 +200,44=100,48=100,72=0 sound | 97 +200,48=100,52=104,76=0 the advances of a text lie outside
texts | 97 52=97 a text lies outside | 83 48=88,52=16 sound | 83 48=89,52=16 a text lies outside | 83 48=89,52=4 sound
texts | 108 20=0x104 a text lies outside | 108 20=0x204 a text lies outside
bitmaps | 76 84=100 the header of a bitmap has no known size | 76 88=40 no known size | 76 92=40 no known size
bitmaps | 76 96=4 no known size | 76 12=0x10000 it has no bitmap, and bounds far away
bitmaps | 76 8=0x100,12=0x100 sound | 76 8=0xFFFFFFFF,12=0xFFFFFFFF sound
bitmaps | 114 88=44,120=0x80001,124=1,140=1 a bitmap that may not be packed is
bitmaps | 114 80=2 no known format | 114 80=1,84=0,88=0,92=0,96=0 sound | 114 116=4 more bits than its size has room for
bitmaps | 77 44=0x400001 a part of the bitmap that it draws is far away | 77 48=0xFFBFFFFF draws is far away
bitmaps | 77 48=0xFFC00000 sound | 77 48=0x300000,104=0x200000 draws is far away
bitmaps | 77 52=0x7F800000 far away | 77 52=0x7FC00000 far away | 77 72=0xCE6E6B28 far away | 77 52=0x41800000 sound
bitmaps | 79 124=140,128=104,132=244,136=32 sound | 79 120=3,124=140,128=104,132=244,136=32 no known format
bitmaps | 77 52=0,64=0 sound | 77 44=0x300000,100=0x200000 far away | 77 44=0x300000,100=0x100000 sound
bitmaps | 77 100=40,104=40,52=0x4788B800,60=0x4788B800 far away | 77 100=40,52=0x4788B800,68=0x4A2AE600 far away
bitmaps | 77 100=40,104=40,56=0x4788B800,64=0x4788B800 far away | 77 104=40,64=0x4788B800,72=0x4A2AE600 far away
gradients | 118 84=3 a corner that is not there | 118 88=3 a corner that is not there | 118 92=3 sound
image_formats | 81 452=8000,456=8000 sound | 81 452=8000001,456=8 a packed bitmap is too large
image_formats | 81 452=64000001,456=1 a packed bitmap is too large
image_formats | 81 92=1,96=4 sound | 81 92=1,96=5 sound | 81 92=1,96=6 no known format | 81 92=0x180001,96=4 sound
image_formats | 81 92=1,96=4,100=33 a bitmap has fewer bytes than it says | 81 1140=48 colours of a bitmap lie outside
image_formats | 80 60=0,64=2,72=0,88=0x10001 sound | 81 512=0xFF01 sound | 81 516=0xFF000100 sound | 81 468=10 sound
image_formats | 81 468=0 fewer bytes than it says | 81 468=17 fewer bytes than it says | 81 468=8 ends within a run
image_formats | 81 512=0xFF000400,516=0x0200FF00 sound | 81 512=0xFE000508 ends within a run
image_formats | 81 516=0x03020005 sound | 81 524=0x02000403 ends within a run
)";

TEST(MetafileCheck, SaysWhichRecordLiesAboutWhat) {
  for (const auto& row : rowsOf(lies)) {
    const std::string metafile = sampleMetafile(row[0]);
    for (std::size_t field = 1; field < row.size(); ++field) {
      const std::vector<std::string> words = splitItems(row[field], ' ');
      const std::size_t record = findRecord(metafile, numberOf(words[0]));
      ASSERT_NE(record, std::string::npos) << row[field];
      std::string changed = metafile;
      for (const std::string& change : splitItems(words[1], ',')) {
        const std::uint32_t number = numberOf(change.substr(change.find('=') + 1));
        changed = change[0] == '+' ? withRoom(changed, record, number)
                                   : withNumber(changed, record + std::stoul(change), number);
      }
      EXPECT_THAT(faultOf(changed), EndsWith(row[field].substr(words[0].size() + words[1].size() + 2)))
          << row[0] << " " << row[field];
    }
  }
}

// The type of each record, what the log calls it and its least bytes. What is shorter is refused, the rest is looked
// into.
constexpr const char* leastBytes = R"(
2 POLYBEZIER 28 | 3 POLYGON 28 | 4 POLYLINE 28 | 5 POLYBEZIERTO 28 | 6 POLYLINETO 28 | 7 POLYPOLYLINE 32
8 POLYPOLYGON 32 | 9 SETWINDOWEXTEX 16 | 10 SETWINDOWORGEX 16 | 11 SETVIEWPORTEXTEX 16 | 12 SETVIEWPORTORGEX 16
13 SETBRUSHORGEX 16 | 14 EOF 20 | 15 SETPIXELV 20 | 16 SETMAPPERFLAGS 12 | 17 SETMAPMODE 12 | 18 SETBKMODE 12
19 SETPOLYFILLMODE 12 | 20 SETROP2 12 | 21 SETSTRETCHBLTMODE 12 | 22 SETTEXTALIGN 12 | 23 SETCOLORADJUSTMENT 32
24 SETTEXTCOLOR 12 | 25 SETBKCOLOR 12 | 26 OFFSETCLIPRGN 16 | 27 MOVETOEX 16 | 28 SETMETARGN 8 | 29 EXCLUDECLIPRECT 24
30 INTERSECTCLIPRECT 24 | 31 SCALEVIEWPORTEXTEX 24 | 32 SCALEWINDOWEXTEX 24 | 33 SAVEDC 8 | 34 RESTOREDC 12
35 SETWORLDTRANSFORM 32 | 36 MODIFYWORLDTRANSFORM 36 | 37 SELECTOBJECT 12 | 38 CREATEPEN 28
39 CREATEBRUSHINDIRECT 24 | 40 DELETEOBJECT 12 | 41 ANGLEARC 28 | 42 ELLIPSE 24 | 43 RECTANGLE 24 | 44 ROUNDRECT 32
45 ARC 40 | 46 CHORD 40 | 47 PIE 40 | 48 SELECTPALETTE 12 | 49 CREATEPALETTE 16 | 50 SETPALETTEENTRIES 20
51 RESIZEPALETTE 16 | 52 REALIZEPALETTE 8 | 53 EXTFLOODFILL 24 | 54 LINETO 16 | 55 ARCTO 40 | 56 POLYDRAW 28
57 SETARCDIRECTION 12 | 58 SETMITERLIMIT 12 | 59 BEGINPATH 8 | 60 ENDPATH 8 | 61 CLOSEFIGURE 8 | 62 FILLPATH 24
63 STROKEANDFILLPATH 24 | 64 STROKEPATH 24 | 65 FLATTENPATH 8 | 66 WIDENPATH 8 | 67 SELECTCLIPPATH 12 | 68 ABORTPATH 8
70 COMMENT 12 | 71 FILLRGN 32 | 72 FRAMERGN 40 | 73 INVERTRGN 28 | 74 PAINTRGN 28 | 75 EXTSELECTCLIPRGN 16
76 BITBLT 100 | 77 STRETCHBLT 108 | 78 MASKBLT 128 | 79 PLGBLT 140 | 80 SETDIBITSTODEVICE 76 | 81 STRETCHDIBITS 80
82 EXTCREATEFONTINDIRECTW 104 | 83 EXTTEXTOUTA 76 | 84 EXTTEXTOUTW 76 | 85 POLYBEZIER16 28 | 86 POLYGON16 28
87 POLYLINE16 28 | 88 POLYBEZIERTO16 28 | 89 POLYLINETO16 28 | 90 POLYPOLYLINE16 32 | 91 POLYPOLYGON16 32
92 POLYDRAW16 28 | 93 CREATEMONOBRUSH 32 | 94 CREATEDIBPATTERNBRUSHPT 32 | 95 EXTCREATEPEN 52 | 96 POLYTEXTOUTA 40
97 POLYTEXTOUTW 40 | 98 SETICMMODE 12 | 99 CREATECOLORSPACE 340 | 100 SETCOLORSPACE 12 | 101 DELETECOLORSPACE 12
102 GLSRECORD 12 | 103 GLSBOUNDEDRECORD 28 | 104 PIXELFORMAT 48 | 105 DRAWESCAPE 16 | 106 EXTESCAPE 16
108 SMALLTEXTOUT 36 | 109 FORCEUFIMAPPING 16 | 110 NAMEDESCAPE 20 | 111 COLORCORRECTPALETTE 24 | 112 SETICMPROFILEA 20
113 SETICMPROFILEW 20 | 114 ALPHABLEND 108 | 115 SETLAYOUT 12 | 116 TRANSPARENTBLT 108 | 118 GRADIENTFILL 36
119 SETLINKEDUFIS 12 | 120 SETTEXTJUSTIFICATION 16 | 121 COLORMATCHTOTARGETW 24 | 122 CREATECOLORSPACEW 608
)";

TEST(MetafileCheck, KnowsTheLeastBytesOfEachRecord) {
  for (const auto& row : rowsOf(leastBytes)) {
    for (const std::string& field : row) {
      const std::vector<std::string> words = splitItems(field, ' ');
      const std::uint32_t bytes = numberOf(words[2]);
      const auto faultWith = [&](std::uint32_t size) {
        std::string metafile = sampleMetafile("lines").substr(0, 108) + numbersOf({numberOf(words[0]), size});
        metafile.resize(108 + size);
        return faultOf(withNumber(metafile, 48, static_cast<std::uint32_t>(metafile.size())));
      };
      EXPECT_THAT(faultWith(bytes), Not(HasSubstr("too short"))) << field;
      EXPECT_THAT(faultWith(bytes - 4), EndsWith(bytes == 8 ? "a wrong size" : "(" + words[1] + "): too short"));
    }
  }
}

TEST(MetafileCheck, EndsForMetafilesWithinEachOther) {
  std::string within = sampleMetafile("comments");
  const std::size_t place = findRecord(within, 70);
  for (int depth = 0; depth < 8; ++depth) {
    const auto bytes = static_cast<std::uint32_t>(within.size());
    // A comment that holds one metafile 44 bytes after its beginning.
    const std::string head =
        numbersOf({70, 56 + bytes, 44 + bytes, 0x43494447, 0x40000004, 0, 0, 0, 0, 1, 0x464D4520, 0, bytes, 44});
    const std::string outer = sampleMetafile("comments").insert(place, head + within);
    within = withNumber(outer, 48, static_cast<std::uint32_t>(outer.size()));
    EXPECT_EQ(faultOf(within) == "sound", depth < 3) << depth;
  }
}

// What is drawn far out is never played. A sample, then types of its records with left, top, right and bottom of what
// they draw. Which of the numbers these come from is in metafile_numbers_test.cpp.
constexpr const char* extents = R"(
lines | 2 10 10 90 90 | 8 10 10 90 90 | 41 30 30 70 70 | 46 10 10 90 60 | 54 95 5 95 5 | 27 5 5 5 5 | 55 10 10 60 60
mapping | 29 40 40 50 50
texts | 96 20 30 20 30
short_lines | 85 10 10 90 90 | 90 10 10 90 90
bitmaps | 76 10 10 70 70 | 79 10 10 60 60
)";

TEST(DrawnExtent, HoldsEveryPointOfARecord) {
  const auto recordOf = [](const std::string& metafile, std::uint32_t type) {
    const std::size_t place = findRecord(metafile, type);
    return metafile.substr(place, numberAt(metafile, place + 4));
  };
  const auto drawn = [](const std::string& record) {
    const DrawnExtent extent = drawnExtent(MetafileRecord(record)).value_or(DrawnExtent{});
    std::string text = std::to_string(numberAt(record, 0));
    for (const std::int64_t edge : {extent.left, extent.top, extent.right, extent.bottom}) {
      text += " " + std::to_string(edge);
    }
    return text;
  };
  for (const auto& row : rowsOf(extents)) {
    for (std::size_t field = 1; field < row.size(); ++field) {
      EXPECT_EQ(drawn(recordOf(sampleMetafile(row[0]), numberOf(row[field]))), row[field]) << row[0];
    }
  }
  EXPECT_EQ(drawn(withNumber(recordOf(sampleMetafile("regions"), 75), 24, 1)), "75 10 10 40 40");
}

TEST(DrawnExtent, IsNotAllThatPathsTextsAndFloodsDraw) {
  const std::set<std::uint32_t> paths = {62, 63, 64, 65, 66};
  const std::set<std::uint32_t> texts = {83, 84, 96, 97, 108};
  for (std::uint32_t type = 2; type < 200; ++type) {
    const std::string bytes = numbersOf({type});
    EXPECT_EQ(drawsPath(MetafileRecord(bytes)), paths.contains(type)) << type;
    EXPECT_EQ(drawsText(MetafileRecord(bytes)), texts.contains(type)) << type;
    EXPECT_EQ(floods(MetafileRecord(bytes)), type == 53) << type;
  }
}

}  // namespace
}  // namespace vernoxa::desktop
