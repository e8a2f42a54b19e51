#include "system/whole_file.h"

#include <gmock/gmock.h>

#include "system/fake_world.h"

namespace vernoxa::inline system {
namespace {

using testing::ElementsAre;

class WholeFile : public testing::Test {
 protected:
  bool write(WhenHeld whenHeld, bool fits = true) {
    return writeWholeFile(fake_.files, fake_.processes, pathOf("C:\\f\\a.json"), whenHeld,
                          [&](OutputFile& file) { return file.write("new ") && fits && file.write("content"); });
  }
  // Names and content of what the folder holds.
  std::vector<std::string> folder() {
    std::vector<std::string> found;
    for (const FolderEntry& entry : fake_.files.entries("C:\\f")) {
      found.push_back(entry.name + ": " + fake_.files.bytes("C:\\f\\" + entry.name));
    }
    return found;
  }

  FakeWorld fake_;
};

TEST_F(WholeFile, IsWrittenBesideAndRenamed) {
  fake_.files.addFolder("C:\\f");
  EXPECT_TRUE(write(WhenHeld::leave));
  EXPECT_TRUE(write(WhenHeld::leave));
  EXPECT_THAT(fake_.files.changes(), ElementsAre("create C:\\f\\~4242.tmp", "rename C:\\f\\a.json",
                                                 "create C:\\f\\~4242.tmp", "rename C:\\f\\a.json"));
  EXPECT_THAT(folder(), ElementsAre("a.json: new content"));
}

TEST_F(WholeFile, AFullDiskKeepsTheFormerOne) {
  fake_.files.addFile("C:\\f\\a.json", "old");
  for (const WhenHeld whenHeld : {WhenHeld::leave, WhenHeld::writeInPlace}) {
    EXPECT_FALSE(write(whenHeld, false));
    EXPECT_THAT(folder(), ElementsAre("a.json: old"));
  }
  fake_.files.addFile("C:\\f\\~4242.tmp", "", readOnlyAttribute);  // no other file can be begun
  EXPECT_FALSE(write(WhenHeld::writeInPlace, false));
  EXPECT_EQ(fake_.files.bytes("C:\\f\\a.json"), "old");
}

TEST_F(WholeFile, AReaderWhoHoldsItIsAskedForNothing) {
  fake_.files.addFile("C:\\f\\a.json", "old");
  fake_.files.held.insert(pathOf("C:\\f\\a.json"));
  EXPECT_FALSE(write(WhenHeld::leave));
  EXPECT_THAT(folder(), ElementsAre("a.json: old"));
  EXPECT_TRUE(write(WhenHeld::writeInPlace));
  EXPECT_THAT(folder(), ElementsAre("a.json: new content"));
}

TEST_F(WholeFile, NothingIsLeftOfOneThatFails) {
  EXPECT_FALSE(write(WhenHeld::writeInPlace));  // no folder
  for (const auto kind : {Faults::Kind::fail, Faults::Kind::throwBadAlloc}) {
    for (const WhenHeld whenHeld : {WhenHeld::leave, WhenHeld::writeInPlace}) {
      for (int call = 1; call < 8; ++call) {
        fake_.files.addFile("C:\\f\\a.json", "old");
        fake_.files.faults.failCall(call, kind);
        try {
          write(whenHeld);
        } catch (const std::bad_alloc&) {
        }
        fake_.files.faults.failCall(0);
        EXPECT_THAT(folder(), ElementsAre(testing::AnyOf("a.json: old", "a.json: new content"))) << call;
      }
    }
  }
}

}  // namespace
}  // namespace vernoxa::inline system
