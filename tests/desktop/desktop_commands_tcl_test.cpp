#include "desktop/desktop_commands.h"

#include "support/command_test_tcl.h"
#include "support/sample_metafiles.h"

namespace vernoxa::desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class DesktopCommands : public CommandTest {};

TEST_F(DesktopCommands, GetClipBoardPicAnswersThePathInUtf8) {
  EXPECT_EQ(call(plugin::run<getClipBoardPic>).text, "");
  fake.clipboard.metafile = sampleMetafile("lines");
  project.set(pathOf(u8"C:\\项目"_gbk));
  fake.files.addFolder(u8"C:\\项目"_gbk);
  const CommandResult result = call(plugin::run<getClipBoardPic>);
  EXPECT_EQ(result.text, utf8(u8"C:\\项目\\Cache\\Output\\Preview.bmp"));
  EXPECT_EQ(part<PreviewPicture>().path, u8"C:\\项目\\Cache\\Output\\Preview.bmp"_gbk);
  fake.clipboard.metafile.reset();
  EXPECT_EQ(call(plugin::run<getClipBoardPic>).text, "");
  EXPECT_NE(part<PreviewPicture>().path, "");
  EXPECT_EQ(result.status, commandDone);
}

TEST_F(DesktopCommands, GetMousePositionAnswersBothCoordinates) {
  EXPECT_EQ(call(plugin::run<getMousePosition>).text, "640 -20");
}

TEST_F(DesktopCommands, WriteToClipboardPutsTheTextIntoTheCodePage) {
  const struct {
    Words words;
    std::string expected;
  } cases[] = {
      {{utf8(u8"电阻 R1")}, u8"电阻 R1"_gbk}, {{"\xB5\xE7"}, "\xB5\xE7"}, {{"a\nb"}, "a\nb"}, {{""}, ""}, {{}, ""},
  };
  for (const auto& each : cases) {
    fake.clipboard.text.reset();
    EXPECT_EQ(call(plugin::run<writeToClipboard>, each.words).status, commandDone);
    EXPECT_EQ(fake.clipboard.text, each.expected);
    EXPECT_EQ(fake.clipboard.openNow, 0);
  }
  fake.clipboard.held = true;
  const CommandResult refused = call(plugin::run<writeToClipboard>, {"x"});
  EXPECT_EQ(refused.status, commandError);
  EXPECT_EQ(refused.text, "");
}

TEST_F(DesktopCommands, KeysGoDownAndUp) {
  EXPECT_EQ(call(plugin::run<afterPlace>).status, commandDone);
  EXPECT_THAT(fake.desktop.keys, ElementsAre(Pair(Key::escape, KeyMove::press), Pair(Key::escape, KeyMove::release)));
  EXPECT_THAT(fake.clock.pauses(), IsEmpty());

  fake.desktop.keys.clear();
  EXPECT_EQ(call(plugin::run<pressEnter>).status, commandDone);
  EXPECT_THAT(fake.desktop.keys, IsEmpty());  // the command is over, the key follows
  ASSERT_EQ(fake.desktop.waiting.size(), 1U);
  fake.desktop.waiting.front()();
  EXPECT_THAT(fake.desktop.keys, ElementsAre(Pair(Key::enter, KeyMove::press), Pair(Key::enter, KeyMove::release)));
  EXPECT_THAT(fake.clock.pauses(), ElementsAre(200, 50));
}

}  // namespace
}  // namespace vernoxa::desktop
