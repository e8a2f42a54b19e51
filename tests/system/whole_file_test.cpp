#include "system/whole_file.h"

#include "support/session_test.h"
#include "system/buffered_file.h"

namespace vernoxa::inline system {
namespace {

using testing::ElementsAre;

class WholeFile : public SessionTest {
 protected:
  bool write(WhenHeld whenHeld, bool fits = true) {
    return writeWholeFile(fake.files, fake.processes, pathOf("C:\\f\\a.json"), whenHeld,
                          [&](OutputFile& file) { return file.write("new ") && fits && file.write("content"); });
  }
  // Names and content of what the folder holds.
  std::vector<std::string> folder() {
    std::vector<std::string> found;
    for (const std::string& name : namesIn("C:\\f")) {
      found.push_back(name + ": " + fake.files.bytes("C:\\f\\" + name));
    }
    return found;
  }
};

TEST_F(WholeFile, IsWrittenBesideAndRenamed) {
  fake.files.addFolder("C:\\f");
  EXPECT_TRUE(write(WhenHeld::leave));
  EXPECT_TRUE(write(WhenHeld::leave));
  EXPECT_THAT(fake.files.changes(), ElementsAre("create C:\\f\\~4242.tmp", "rename C:\\f\\a.json",
                                                "create C:\\f\\~4242.tmp", "rename C:\\f\\a.json"));
  EXPECT_THAT(folder(), ElementsAre("a.json: new content"));
}

TEST_F(WholeFile, AFullDiskKeepsTheFormerOne) {
  fake.files.addFile("C:\\f\\a.json", "old");
  for (const WhenHeld whenHeld : {WhenHeld::leave, WhenHeld::writeInPlace}) {
    EXPECT_FALSE(write(whenHeld, false));
    EXPECT_THAT(folder(), ElementsAre("a.json: old"));
  }
  fake.files.addFile("C:\\f\\~4242.tmp", "", readOnlyAttribute);  // no other file can be begun
  EXPECT_FALSE(write(WhenHeld::writeInPlace, false));
  EXPECT_EQ(fake.files.bytes("C:\\f\\a.json"), "old");
}

TEST_F(WholeFile, AReaderWhoHoldsItIsAskedForNothing) {
  fake.files.addFile("C:\\f\\a.json", "old");
  fake.files.held.insert(pathOf("C:\\f\\a.json"));
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
        fake.files.addFile("C:\\f\\a.json", "old");
        fake.files.faults.failCall(call, kind);
        try {
          write(whenHeld);
        } catch (const std::bad_alloc&) {
        }
        fake.files.faults.failCall(0);
        EXPECT_THAT(folder(), ElementsAre(testing::AnyOf("a.json: old", "a.json: new content"))) << call;
      }
    }
  }
}

// Notes the size of each piece; refuses one of that size.
class Pieces final : public OutputFile {
 public:
  explicit Pieces(std::size_t refused = 0) : refused_(refused) {}
  bool write(std::string_view bytes) override {
    sizes.push_back(bytes.size());
    return bytes.size() != refused_;
  }

  std::vector<std::size_t> sizes;

 private:
  const std::size_t refused_;
};

TEST(BufferedFileTest, WritesFullPiecesUntilOneFails) {
  const auto writeTo = [](Pieces& pieces) {
    BufferedFile file(pieces);
    for (const std::size_t size : {65535U, 1U, 1U, 65536U, 3U}) {
      file.put(std::string(size, 'x'));
    }
    return file.finish();
  };
  Pieces good;
  EXPECT_TRUE(writeTo(good));
  EXPECT_THAT(good.sizes, ElementsAre(65536U, 65536U, 4U));
  Pieces full(65536);
  EXPECT_FALSE(writeTo(full));
  EXPECT_THAT(full.sizes, ElementsAre(65536U));
}

}  // namespace
}  // namespace vernoxa::inline system
