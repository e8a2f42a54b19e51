#include "desktop/desktop_commands.h"

#include <gmock/gmock.h>

#include "support/fake_script_host.h"
#include "support/sample_metafiles.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"

namespace vernoxa::desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class DesktopCommands : public testing::Test {
 protected:
  using Command = CommandResult (*)(CommandCall&, plugin::Session&);

  CommandResult invoke(Command command, const Words& words) {
    const TclWords held(words);
    const Arguments arguments = held.arguments();
    CommandCall call{arguments, host};
    return command(call, fake.session);
  }
  FakeDesktop& desktop() { return fake.fake.desktop; }

  TclInterp interp;  // Tcl's objects need its library started
  FakeSession fake;
  FakeScriptHost host;
};

TEST_F(DesktopCommands, GetClipBoardPicAnswersThePathInUtf8) {
  EXPECT_EQ(invoke(plugin::run<getClipBoardPic>, {"GetClipBoardPic"}).text, "");
  fake.fake.clipboard.metafile = sampleMetafiles().front().bytes;
  fake.project.set(pathOf(u8"C:\\项目"_gbk));
  fake.fake.files.addFolder(u8"C:\\项目"_gbk);
  const CommandResult result = invoke(plugin::run<getClipBoardPic>, {"GetClipBoardPic"});
  EXPECT_EQ(result.text, utf8(u8"C:\\项目\\Cache\\Output\\Preview.bmp"));
  EXPECT_EQ(fake.part<PreviewPicture>().path, u8"C:\\项目\\Cache\\Output\\Preview.bmp"_gbk);
  fake.fake.clipboard.metafile.reset();
  EXPECT_EQ(invoke(plugin::run<getClipBoardPic>, {"GetClipBoardPic"}).text, "");
  EXPECT_NE(fake.part<PreviewPicture>().path, "");
  EXPECT_EQ(result.status, commandDone);
}

TEST_F(DesktopCommands, GetMousePositionAnswersBothCoordinates) {
  EXPECT_EQ(invoke(plugin::run<getMousePosition>, {"GetMousePosition"}).text, "640 -20");
}

TEST_F(DesktopCommands, WriteToClipboardPutsTheTextIntoTheCodePage) {
  const struct {
    Words words;
    std::string expected;
  } cases[] = {
      {{"writeToClipboard", utf8(u8"电阻 R1")}, u8"电阻 R1"_gbk},
      {{"writeToClipboard", "\xB5\xE7"}, "\xB5\xE7"},
      {{"writeToClipboard", "a\nb"}, "a\nb"},
      {{"writeToClipboard", ""}, ""},
      {{"writeToClipboard"}, ""},
  };
  for (const auto& each : cases) {
    fake.fake.clipboard.text.reset();
    EXPECT_EQ(invoke(plugin::run<writeToClipboard>, each.words).status, commandDone);
    EXPECT_EQ(fake.fake.clipboard.text, each.expected);
    EXPECT_EQ(fake.fake.clipboard.openNow, 0);
  }
  fake.fake.clipboard.held = true;
  const CommandResult refused = invoke(plugin::run<writeToClipboard>, {"writeToClipboard", "x"});
  EXPECT_EQ(refused.status, commandError);
  EXPECT_EQ(refused.text, "");
}

TEST_F(DesktopCommands, KeysGoDownAndUp) {
  EXPECT_EQ(invoke(plugin::run<afterPlace>, {"afterPlace"}).status, commandDone);
  EXPECT_THAT(desktop().keys, ElementsAre(Pair(Key::escape, KeyMove::press), Pair(Key::escape, KeyMove::release)));
  EXPECT_THAT(fake.fake.clock.pauses(), IsEmpty());

  desktop().keys.clear();
  EXPECT_EQ(invoke(plugin::run<pressEnter>, {"pressEnter"}).status, commandDone);
  EXPECT_THAT(desktop().keys, IsEmpty());  // the command is over, the key follows
  ASSERT_EQ(desktop().waiting.size(), 1U);
  desktop().waiting.front()();
  EXPECT_THAT(desktop().keys, ElementsAre(Pair(Key::enter, KeyMove::press), Pair(Key::enter, KeyMove::release)));
  EXPECT_THAT(fake.fake.clock.pauses(), ElementsAre(200, 50));
}

}  // namespace
}  // namespace vernoxa::desktop
