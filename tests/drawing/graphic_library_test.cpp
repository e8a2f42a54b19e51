#include "drawing/graphic_library.h"

#include <gtest/gtest.h>

#include "drawing/drawn.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"
#include "text/outside_json.h"
#include "text/text.h"

namespace vernoxa::drawing {
namespace {

class GraphicLibraryTest : public testing::Test {
 protected:
  GraphicLibraryTest() { fake.fake.files.addFolder("C:\\App"); }

  void add(std::initializer_list<std::string_view> words) {
    if (const WordRecord record(words); !library.draw(record, Encoding::asGiven)) {
      library.draw(record, Encoding::utf8);
    }
  }
  std::string file(const std::string& name) {
    return fake.fake.files.bytes("C:\\App\\Cache\\Library\\" + name + ".json");
  }
  // Without the pad stacks, in one line.
  std::string content(const std::string& name) {
    Json document = Json::parse(file(name)).document;
    EXPECT_EQ(withDosLineEnds(document.printFormatted()), file(name));
    EXPECT_EQ(document.member("padstacks").size(), 8U);
    return document.member("children") ? Json::copyOf(document.member("children")).printUnformatted() +
                                             Json::copyOf(document.member("lib")).printUnformatted()
                                       : "";
  }

  FakeSession fake;
  GraphicLibrary library{fake.project, fake.fake.files, fake.fake.processes, fake.text, fake.logs};
};

TEST_F(GraphicLibraryTest, HoldsSymbolsAndWhatStandsBeforeThem) {
  library.start();
  add({"Line", "0", "1", "2", "3", "8", "1", "0"});
  add({"BitMap", "0"});
  add({"Name", "RES\\1"});
  add({"Pin", "0", "10", "", "", "8", "0", "SHORT", "TOP"});
  add({"Text", "1", "2", utf8(u8"电\U0001F600"), "8", "", "-9", "0"});
  add({"Name", "CAP"});
  EXPECT_EQ(library.finish("lib/sub\\x"), "C:/App/Cache/Library/lib-sub-x.json");
  const std::string line = R"j({"name":"line","attr":{"style":"stroke:#FF0000;stroke-width:1;stroke-linecap:round",)j"
                           R"j("x1":"0","y1":"1","x2":"2","y2":"3"}})j";
  const std::string pin =
      R"j({"name":"use","attr":{"transform":"translate(0,10) rotate(-90)","xlink:href":"#PackagePinShort"}})j";
  const std::string text = R"j({"name":"text","value":")j" + utf8(u8"电\U0001F600") +
                           R"j(","attr":{"style":"stroke:#FF0000;stroke-width:0;font-size:7;fill:#FF0000",)j"
                           R"j("transform":"translate(1,2) rotate(0)","dominant-baseline":"hanging"}})j";
  EXPECT_EQ(content("lib-sub-x"), "[" + line + R"j(][{"name":"g","attr":{"id":"RES\\1"},"children":[)j" + pin + "," +
                                      text + R"j(]},{"name":"g","attr":{"id":"CAP"},"children":[]}])j");
}

TEST_F(GraphicLibraryTest, AFileThatIsThereIsKept) {
  library.start();
  add({"Name", "FIRST"});
  library.finish("x");
  const std::string first = file("x");
  library.start();
  add({"Name", "SECOND"});
  EXPECT_EQ(library.finish("x"), "C:/App/Cache/Library/x.json");
  EXPECT_EQ(file("x"), first);
  EXPECT_EQ(library.finish("y"), "C:/App/Cache/Library/y.json");  // nothing is open any more
  EXPECT_EQ(file("y"), "(no file)");
}

TEST_F(GraphicLibraryTest, WhatACrashLeftIsReplaced) {
  const std::string path = "C:\\App\\Cache\\Library\\x.json";
  library.start();
  library.finish("x");
  const std::string whole = file("x");
  const struct {
    std::string there;
    bool stays;
  } cases[] = {
      {"", false},
      {std::string(4096, '\0'), false},
      {whole.substr(0, whole.size() - 1), false},
      {"{}", true},
      {"\"somebody's own\"", true},
      {"[" + std::string(longestOutsideJson, ' ') + "]", true},  // nobody can say
  };
  for (const auto& each : cases) {
    fake.fake.files.addFile(path, each.there);
    library.start();
    library.finish("x");
    EXPECT_TRUE(file("x") == (each.stays ? each.there : whole)) << each.there.substr(0, 20);
  }
  fake.fake.files.addFile(path, "");
  fake.fake.files.held.insert(pathOf(path));
  fake.enableTraffic();
  library.start();
  library.finish("x");
  EXPECT_EQ(file("x"), "");
  EXPECT_EQ(fake.traffic(), "not written: " + std::string(path));
  EXPECT_EQ(fake.fake.files.entries("C:\\App\\Cache\\Library").size(), 1U);
}

TEST_F(GraphicLibraryTest, WithoutADocumentRecordsAreDropped) {
  add({"Name", "X"});
  add({"Line", "0"});
  EXPECT_EQ(library.finish(""), "C:/App/Cache/Library/.json");
  EXPECT_TRUE(fake.fake.files.changes().empty());
  library.start();
  add({"Name", "OLD"});
  library.start();
  library.finish("x");
  EXPECT_EQ(content("x"), "[][]");
}

TEST_F(GraphicLibraryTest, ADocumentThatCannotBeWrittenForWantOfMemoryWaits) {
  library.start();
  add({"Name", "FIRST"});
  fake.fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_THROW(library.finish("x"), std::bad_alloc);
  fake.fake.files.faults.failCall(0);
  library.finish("x");
  EXPECT_EQ(content("x"), R"([][{"name":"g","attr":{"id":"FIRST"},"children":[]}])");
}

TEST_F(GraphicLibraryTest, TheAnswerIsUtf8AndTheNameStaysAsItIs) {
  fake.project.set(pathOf(u8"C:\\项目\\\x95\x5C"_gbk));  // the last character's second byte looks like "\"
  fake.fake.files.addFolder(u8"C:\\项目\\\x95\x5C"_gbk);
  const struct {
    std::string given;
    std::string answered;
    std::string made;
  } names[] = {
      {utf8(u8"电"), utf8(u8"电"), u8"电"_gbk},
      {"\x95\x5C/\x95\x5C", "\x95\x5C-\x95\x5C", "\x95\x5C-\x95\x5C"},  // of an old host, in the code page
      {"\x95\x5C\\c", "\x95\x5C-c", "\x95\x5C-c"},
      {"a\\b/c", "a-b-c", "a-b-c"},
      {std::string("a").append(tclNul).append("b"), std::string("a").append(tclNul).append("b"), "a"},
  };
  for (const auto& name : names) {
    library.start();
    EXPECT_EQ(library.finish(name.given), utf8(u8"C:/项目/昞/Cache/Library/") + name.answered + ".json");
    EXPECT_NE(fake.fake.files.bytes(u8"C:\\项目\\\x95\x5C\\Cache\\Library\\"_gbk + name.made + ".json"), "(no file)");
  }
}

}  // namespace
}  // namespace vernoxa::drawing
