#include "desktop/clipboard_picture.h"

#include "desktop/bitmap_file.h"
#include "desktop/dialog_place.h"
#include "support/sample_metafiles.h"
#include "support/session_test.h"

namespace vernoxa::desktop {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;
using namespace std::string_literals;

const std::string drawing = sampleMetafile("lines");
constexpr ScreenMeasures usual{1920, 1080, 508, 286};

TEST(FrameInPixels, CutsEachEdgeInSinglePrecision) {
  const struct {
    PictureFrame frame;
    ScreenMeasures screen;
    PixelSize size;  // 0: no size
  } cases[] = {
      {{0, 0, 27700, 19000}, usual, {1046, 717}},
      {{27700, 19000, 0, 0}, usual, {1046, 717}},
      {{-100, -100, 100, 100}, usual, {6, 6}},  // -3.78 and 3.78 lose their fractions towards zero
      {{14, 14, 27, 27}, usual, {1, 1}},        // 0.53 and 1.02
      {{0, 0, 100, 126555}, usual, {3, 4778}},  // 4779 in double precision
      {{100, 0, 100, 5000}, usual, {}},
      {{0, 0, 27700, 19000}, {1920, 1080, 0, 0}, {}},
      {{0, 0, 0, 0}, {1920, 1080, 0, 0}, {}},
      {{-2147483647 - 1, 0, 2147483647, 1000}, {100, 100, 1, 1}, {}},
      {{-127, 0, 2147483520, 1000}, {100, 100, 1, 1}, {2147483647, 1000}},
      {{-128, 0, 2147483520, 1000}, {100, 100, 1, 1}, {}},
      {{1000, 0, 2147483647, 1000}, {100, 100, 1, 1}, {}},  // one edge alone too far out
  };
  for (const auto& [frame, screen, size] : cases) {
    EXPECT_THAT(frameInPixels(frame, screen).value_or(PixelSize{}), FieldsAre(size.width, size.height))
        << frame.left << " to " << frame.right << ", down to " << frame.bottom;
  }
}

TEST(DrawnSize, KeepsTheShapeOfWhatIsTooLarge) {
  const std::pair<PixelSize, PixelSize> cases[] = {
      {{8000, 8000}, {8000, 8000}},     {{8001, 8000}, {8000, 7999}},
      {{32000, 16000}, {11313, 5656}},  {{2147483647, 2147483647}, {8000, 8000}},
      {{2147483647, 1}, {64000000, 1}}, {{3, 2147483647}, {1, 64000000}},
  };
  for (const auto& [framed, drawn] : cases) {
    EXPECT_THAT(drawnSize(framed), FieldsAre(drawn.width, drawn.height)) << framed.width << " x " << framed.height;
  }
}

TEST(BitmapLayout, CountsPaletteAndPaddedRows) {
  const struct {
    PixelSize size;
    int bitCount;
    std::size_t palette;
    std::size_t pixels;  // 0: no layout
  } cases[] = {
      {{33, 2}, 1, 8, 16},
      {{5, 1}, 8, 1024, 8},
      {{3, 2}, 9, 0, 8},
      {{3, 2}, 16, 0, 16},
      {{3, 2}, 24, 0, 24},
      {{0, 5}, 8, 0, 0},
      {{5, 0}, 8, 0, 0},
      {{5, -1}, 32, 0, 0},
      {{1, 536870898}, 32, 0, 2147483592},  // with 54 bytes of headers the largest 32-bit length but one
      {{1, 536870899}, 32, 0, 0},
      {{4, 536870642}, 8, 1024, 2147482568},  // with 1078 bytes before them
      {{4, 536870643}, 8, 0, 0},
      {{2147483647, 2147483647}, 32, 0, 0},
  };
  for (const auto& each : cases) {
    const auto layout = bitmapLayout(each.size, each.bitCount);
    EXPECT_EQ(layout ? layout->paletteBytes : 0, each.palette) << each.size.width << " " << each.bitCount;
    EXPECT_EQ(layout ? layout->pixelBytes : 0, each.pixels) << each.size.width << " " << each.bitCount;
    EXPECT_EQ(layout.value_or(BitmapLayout{}).pixelOffset(), 40 + each.palette);
  }
}

class ClipboardPictureTest : public SessionTest {
 protected:
  ClipboardPictureTest() {
    fake.files.addFolder("C:\\");
    fake.clipboard.metafile = drawing;
  }
  FilePath save() { return part<const ClipboardPicture>().save(); }
  // What a call leaves behind, whatever it answered.
  void expectTidy() {
    EXPECT_FALSE(fake.files.exists("C:/Temp/test.emf"));
    EXPECT_EQ(fake.clipboard.openNow, 0);
  }
};

TEST_F(ClipboardPictureTest, PutsAFileHeaderBeforeThePackedBitmap) {
  fake.files.addFolder("C:\\P");
  const auto write = [&](const PackedBitmap& bitmap) {
    return writeBitmapFile(fake.files, fake.processes, pathOf("C:\\P\\x.bmp"), bitmap);
  };
  ASSERT_TRUE(write({32, std::string(300, 'x')}));
  EXPECT_EQ(fake.files.bytes("C:\\P\\x.bmp"), "BM\x3A\x01\0\0\0\0\0\0\x36\0\0\0"s + std::string(300, 'x'));
  ASSERT_TRUE(write({8, "y"}));
  for (const int failing : {2, 3}) {  // either write
    fake.files.faults.failCall(failing);
    EXPECT_FALSE(write({32, "z"}));
    EXPECT_EQ(fake.files.bytes("C:\\P\\x.bmp"), "BM\x0F\0\0\0\0\0\0\0\x36\x04\0\0y"s);
  }
}

TEST_F(ClipboardPictureTest, SavesThePreviewBelowTheProjectsFolder) {
  project.set(pathOf("C:\\\xCF\xEE\xC4\xBF"));
  fake.files.addFolder("C:\\\xCF\xEE\xC4\xBF");
  const std::string preview = "C:\\\xCF\xEE\xC4\xBF\\Cache\\Output\\Preview.bmp";
  for (int pass = 0; pass < 2; ++pass) {  // folders missing, then there
    EXPECT_EQ(save(), pathOf(preview));
    EXPECT_THAT(fake.files.bytes(preview), testing::EndsWith("packed"));
    expectTidy();
    fake.clipboard.older = "\1\0\x9\0\0\x3\0\0\0\0\0\0\0\0\0\0\0\0\3\0\0\0\0\0"s;  // a header and an end
  }
  EXPECT_THAT(fake.pictures.opened, ElementsAre(drawing, drawing));
  EXPECT_THAT(fake.pictures.drawn.at(0), FieldsAre(96, 47));
  EXPECT_EQ(fake.pictures.allowed, std::chrono::seconds(10));  // for which the host may hang
}

TEST_F(ClipboardPictureTest, AnswersNothingWhenAStepFails) {
  const struct {
    void (*spoil)(FakeWorld&);
    const char* told;  // in the traffic log
  } cases[] = {
      {[](FakeWorld& its) { its.clipboard.held = true; }, ""},
      {[](FakeWorld& its) { its.clipboard.metafile.reset(); }, ""},
      {[](FakeWorld& its) { its.clipboard.metafile = "drawing"; }, "no header of a metafile"},
      {[](FakeWorld& its) { its.clipboard.older = ""; }, "no header of an older metafile"},
      {[](FakeWorld& its) { its.pictures.frame.reset(); }, "it has no size"},
      {[](FakeWorld& its) { its.pictures.frame = PictureFrame{}; }, "it has no size"},
      {[](FakeWorld& its) { its.pictures.bitmap.reset(); }, "no room or time to draw 96 x 47"},
      {[](FakeWorld& its) { its.files.addFolder("C:\\App\\Cache\\Output\\Preview.bmp"); },
       "not written: C:\\App\\Cache\\Output\\Preview.bmp"},
      {[](FakeWorld& its) { its.files.addFolder("C:\\Temp\\test.emf"); }, "it cannot be saved"},
  };
  for (const auto& each : cases) {
    FakeSession one;
    one.enableTraffic();
    one.fake.clipboard.metafile = drawing;
    each.spoil(one.fake);
    EXPECT_TRUE(one.part<const ClipboardPicture>().save().empty()) << each.told;
    EXPECT_EQ(one.traffic(), *each.told == '\0' ? "" : "no picture of the metafile: "s + each.told);
    EXPECT_TRUE(*each.told != '\0' || one.fake.files.changes().empty());  // without a drawing no file is touched
    for (const char* const file : {"C:\\App\\Cache\\Output\\Preview.bmp", "C:/Temp/test.emf"}) {
      EXPECT_EQ(one.fake.files.bytes(file), "(no file)") << each.told;
    }
    EXPECT_EQ(one.fake.clipboard.openNow, 0) << each.told;
  }
  enableTraffic();
  EXPECT_FALSE(part<const ClipboardPicture>().convert(pathOf("C:\\none.emf"), pathOf("C:\\none.bmp")));
  EXPECT_EQ(traffic(), "no picture of the metafile: it cannot be read");
}

TEST_F(ClipboardPictureTest, WaitsAMomentForAnotherProgram) {
  fake.clipboard.heldOnce = 10;
  EXPECT_FALSE(save().empty());
  EXPECT_EQ(fake.clock.pauses(), std::vector<int>(10, 20));
  fake.clipboard.heldOnce = 11;
  EXPECT_TRUE(save().empty());
  expectTidy();
}

TEST_F(ClipboardPictureTest, EveryFailureOfTheFileSystemLeavesNothingOpenOrBehind) {
  for (const auto kind : {Faults::Kind::fail, Faults::Kind::throwBadAlloc}) {
    int left = 0;
    for (int call = 1; call <= 12; ++call) {
      FakeSession one;
      one.fake.clipboard.metafile = drawing;
      one.fake.files.faults.failCall(call, kind);
      try {
        one.part<const ClipboardPicture>().save();
      } catch (const std::bad_alloc&) {
        EXPECT_EQ(kind, Faults::Kind::throwBadAlloc);
      }
      one.fake.files.faults.failCall(0);
      left += one.fake.files.exists("C:/Temp/test.emf") ? 1 : 0;
      EXPECT_EQ(one.fake.clipboard.openNow, 0) << call;
    }
    EXPECT_EQ(left, 1);  // when its removal itself fails
  }
  fake.pictures.drawThrows = true;
  EXPECT_THROW(save(), std::bad_alloc);
  expectTidy();
}

TEST(DialogPlace, GrowsAndCentresWithinTheWorkArea) {
  const Box area{10, 20, 1280, 1000};
  EXPECT_EQ(dialogGrowth(-5, 300, area), 0);
  EXPECT_EQ(dialogGrowth(200, 300, area), 200);
  EXPECT_EQ(dialogGrowth(5000, 300, area), 980);
  EXPECT_EQ(dialogGrowth(50, 1300, area), 0);
  const std::array<Box, 3> cases[] = {
      // the dialog, what is around it, its place
      {{{9, 9, 300, 200}, {100, 100, 500, 400}, {200, 200, 300, 200}}},
      {{{9, 9, 300, 200}, {-400, -300, 500, 400}, {10, 20, 300, 200}}},
      {{{9, 9, 300, 200}, {1200, 900, 500, 400}, {990, 820, 300, 200}}},
      {{{9, 9, 2000, 1500}, {3000, 3000, 500, 400}, {10, 20, 2000, 1500}}},
  };
  for (const auto& [dialog, around, place] : cases) {
    EXPECT_THAT(centred(dialog, around, area), FieldsAre(place.left, place.top, place.width, place.height));
  }
}

}  // namespace
}  // namespace vernoxa::desktop
