#include "plugin/installation.h"

#include <gmock/gmock.h>

#include "plugin/companion_launch.h"
#include "system/fake_world.h"

namespace vernoxa::plugin {
namespace {

using testing::ElementsAre;

TEST(Directories, FollowTheModulePath) {
  const Directories found = directoriesOf(pathOf("D:\\\xD5\x5C tools\\bin\\Vernoxa64.dll"));
  EXPECT_EQ(found.pluginFolder, pathOf("D:\\\xD5\x5C tools\\bin"));
  EXPECT_EQ(found.logDirectory, pathOf("D:\\\xD5\x5C tools\\Script\\Log"));
  EXPECT_EQ(found.configurationFile, pathOf("D:\\\xD5\x5C tools\\Config\\App.txt"));
  EXPECT_EQ(directoriesOf(pathOf("Vernoxa64.dll")).baseDirectory, pathOf("Vernoxa64.dll"));
}

TEST(Configuration, OnlyStringsCount) {
  const FakeSession with;
  const std::tuple<const char*, std::optional<std::string>, bool> rows[] = {
      {R"({"AlgMenuLang":"CN","StartWithCadence":"1"})", "CN", true},
      {R"({"AlgMenuLang":"","StartWithCadence":"11"})", "", false},
      {R"({"AlgMenuLang":7,"StartWithCadence":1})", std::nullopt, false},
      {R"({"StartWithCadence":true,"startWithCadence":"1"})", std::nullopt, false},
      {R"({"StartWithCadence":"0"} {"StartWithCadence":"1"})", std::nullopt, false},
      {"[]", std::nullopt, false},
  };
  for (const auto& [text, language, start] : rows) {
    const auto found = parseConfiguration(text, with.logs);
    ASSERT_TRUE(found) << text;
    EXPECT_EQ(found->language, language) << text;
    EXPECT_EQ(found->startCompanion, start) << text;
  }
  for (const char* const text : {"", "{", "AlgMenuLang=CN", "\xFF\xFE{"}) {
    EXPECT_FALSE(parseConfiguration(text, with.logs)) << text;
  }
}

class CompanionLaunchTest : public testing::Test, protected FakeSession {};

TEST_F(CompanionLaunchTest, ProcessIsFoundByPartOfItsNameWithCase) {
  const std::pair<std::vector<Process>, std::uint16_t> rows[] = {
      {{}, 0},
      {{{"lantuzs.exe", 7}}, 0},  // the first entry is never looked at
      {{{"idle", 0}, {"LanTuZS.exe", 7}}, 0},
      {{{"idle", 0}, {"xlantuzs2.exe", 7}, {"lantuzs.exe", 8}}, 7},
      {{{"idle", 0}, {"other.exe", 7}, {"lantuzs.exe", 8}}, 8},
      {{{"idle", 0}, {"lantuzs.exe", 0x12345}}, 0x2345},
  };
  for (const auto& [running, expected] : rows) {
    fake.processes.list = running;
    EXPECT_EQ(processIdFromName(fake.processes, logs, "lantuzs"), expected);
  }
  fake.processes.listThrows = true;
  EXPECT_EQ(processIdFromName(fake.processes, logs, "lantuzs"), 0);
  EXPECT_EQ(crashes(), "GetProcessidFromName");
}

TEST_F(CompanionLaunchTest, StartsInTheBaseDirectoryAndGivesTheFolderBack) {
  launchCompanion(fake.processes, fake.files, pathOf("C:\\App"));
  fake.files.addFile("C:\\App\\LanTuZS.exe", "");
  launchCompanion(fake.processes, fake.files, pathOf("C:\\App"));
  fake.processes.startThrows = true;
  EXPECT_THROW(launchCompanion(fake.processes, fake.files, pathOf("C:\\App")), std::bad_alloc);
  EXPECT_THAT(fake.processes.started, ElementsAre("C:\\App> lantuzs.exe AutoLogin", "C:\\App> LanTuZS.exe AutoLogin"));
  EXPECT_EQ(fake.processes.folder, "D:\\Work");
}

}  // namespace
}  // namespace vernoxa::plugin
