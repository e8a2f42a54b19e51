#include "drawing/graphic_library.h"

#include "drawing/drawn.h"
#include "support/session_test.h"
#include "text/outside_json.h"

namespace vernoxa::drawing {
namespace {

class GraphicLibraryTest : public SessionTest {
 protected:
  GraphicLibraryTest() { fake.files.addFolder("C:\\App"); }

  // Records, their words between semicolons.
  void add(std::initializer_list<std::string> records) {
    for (const std::string& words : records) {
      if (const WordRecord record(words); !library.draw(record, Encoding::asGiven)) {
        library.draw(record, Encoding::utf8);
      }
    }
  }
  std::string file(const std::string& name) { return fake.files.bytes("C:\\App\\Cache\\Library\\" + name + ".json"); }
  // What stands before the first symbol, and the symbols.
  std::string content(const std::string& name) {
    const Json document = parsedFile(file(name));
    EXPECT_EQ(document.member("padstacks").size(), 8U);
    return drawn(document.member("children")) + "---\n" + drawn(document.member("lib"));
  }

  GraphicLibrary& library = part<GraphicLibrary>();
};

TEST_F(GraphicLibraryTest, HoldsSymbolsAndWhatStandsBeforeThem) {
  library.start();
  add({"Line;0;1;2;3;8;1;0", "BitMap;0", "Name;RES\\1", "Pin;0;10;;;8;0;SHORT;TOP",
       "Text;1;2;" + utf8(u8"电\U0001F600") + ";8;;-9;0", "Name;CAP"});
  EXPECT_EQ(library.finish("lib/sub\\x"), "C:/App/Cache/Library/lib-sub-x.json");
  EXPECT_EQ(content("lib-sub-x"),
            "line style=stroke:#FF0000;stroke-width:1;stroke-linecap:round|x1=0|y1=1|x2=2|y2=3\n---\ng id=RES\\1\n"
            "use transform=translate(0,10) rotate(-90)|xlink:href=#PackagePinShort\ntext [" +
                utf8(u8"电\U0001F600") +
                "] style=stroke:#FF0000;stroke-width:0;font-size:7;fill:#FF0000|transform=translate(1,2) rotate(0)|"
                "dominant-baseline=hanging\ng id=CAP\n");
}

TEST_F(GraphicLibraryTest, AWholeFileIsKeptAndWhatACrashLeftIsReplaced) {
  const std::string path = "C:\\App\\Cache\\Library\\x.json";
  const auto make = [this](const char* name) {
    library.start();
    add({name});
    return library.finish("x");
  };
  make("Name;FIRST");
  const std::string whole = file("x");
  for (const std::string& there : {std::string(), std::string(4096, '\0'), whole.substr(0, whole.size() - 1)}) {
    fake.files.addFile(path, there);
    make("Name;FIRST");
    EXPECT_TRUE(file("x") == whole) << there.substr(0, 20);
  }
  for (const std::string& there : {whole, std::string("{}"), std::string("\"somebody's own\""),
                                   "[" + std::string(longestOutsideJson, ' ') + "]"}) {  // nobody can say
    fake.files.addFile(path, there);
    EXPECT_EQ(make("Name;SECOND"), "C:/App/Cache/Library/x.json");
    EXPECT_TRUE(file("x") == there) << there.substr(0, 20);
    EXPECT_EQ(library.finish("y"), "C:/App/Cache/Library/y.json");  // nothing is open any more
  }
  fake.files.addFile(path, "");
  fake.files.held.insert(pathOf(path));
  enableTraffic();
  make("Name;FIRST");
  EXPECT_EQ(file("x"), "");
  EXPECT_EQ(traffic(), "not written: " + path);
  EXPECT_EQ(fake.files.entries("C:\\App\\Cache\\Library").size(), 1U);
}

TEST_F(GraphicLibraryTest, WithoutADocumentRecordsAreDropped) {
  EXPECT_FALSE(library.draw({"Name", "X"}, Encoding::utf8));
  EXPECT_EQ(library.finish(""), "C:/App/Cache/Library/.json");
  EXPECT_TRUE(fake.files.changes().empty());
  library.start();
  add({"Name;OLD"});
  library.start();
  library.finish("x");
  EXPECT_EQ(content("x"), "---\n");
}

TEST_F(GraphicLibraryTest, ADocumentThatCannotBeWrittenForWantOfMemoryWaits) {
  library.start();
  add({"Name;FIRST"});
  fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_THROW(library.finish("x"), std::bad_alloc);
  fake.files.faults.failCall(0);
  library.finish("x");
  EXPECT_EQ(content("x"), "---\ng id=FIRST\n");
}

TEST_F(GraphicLibraryTest, TheAnswerIsUtf8AndTheNameStaysAsItIs) {
  project.set(pathOf(u8"C:\\项目\\\x95\x5C"_gbk));  // the last character's second byte looks like "\"
  fake.files.addFolder(u8"C:\\项目\\\x95\x5C"_gbk);
  const std::array<std::string, 3> names[] = {
      {utf8(u8"电"), utf8(u8"电"), u8"电"_gbk},
      {"\x95\x5C/\x95\x5C", "\x95\x5C-\x95\x5C", "\x95\x5C-\x95\x5C"},  // of an old host, in the code page
      {"\x95\x5C\\c", "\x95\x5C-c", "\x95\x5C-c"},
      {"a\\b/c", "a-b-c", "a-b-c"},
      {std::string("a").append(tclNul).append("b"), std::string("a").append(tclNul).append("b"), "a"},
  };
  for (const auto& [given, answered, made] : names) {
    library.start();
    EXPECT_EQ(library.finish(given), utf8(u8"C:/项目/昞/Cache/Library/") + answered + ".json");
    EXPECT_NE(fake.files.bytes(u8"C:\\项目\\\x95\x5C\\Cache\\Library\\"_gbk + made + ".json"), "(no file)");
  }
}

}  // namespace
}  // namespace vernoxa::drawing
