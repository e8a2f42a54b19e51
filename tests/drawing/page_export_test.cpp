// Pages from their records to their files.
#include "drawing/page_export.h"

#include "drawing/drawn.h"
#include "support/session_test.h"

namespace vernoxa::drawing {
namespace {

using Names = std::vector<std::string>;

class PageExportTest : public SessionTest {
 protected:
  PageExportTest() { fake.files.addFolder("C:\\App"); }

  // Records, their words between semicolons.
  void page(std::initializer_list<std::string> records) { add(Use::page, records); }
  void symbol(std::initializer_list<std::string> records) { add(Use::symbol, records); }
  void finish(const std::string& schematic, const std::string& name, const std::string& key) {
    pages.finish({schematic, name, key});
  }
  std::string file(const std::string& name) { return fake.files.bytes(folder + "\\" + name + ".json"); }
  Names names() { return namesIn(folder); }

  const std::string folder = "C:\\App\\Cache\\Output";
  PageExport& pages = part<PageExport>();

 private:
  void add(Use use, std::initializer_list<std::string> records) {
    for (const std::string& given : records) {
      WordRecord record(given);
      record.showInCodePage(text, true);
      pages.addRecord(use, record, WordRecord(given));
    }
  }
};

TEST_F(PageExportTest, APageToTheByte) {
  pages.start();
  page({R"(Page;PAGE "1";8000;11000;K)", "Junction;1;2;3;24;0", R"(Text;1;2;R\1;40;;-9;0)"});
  finish("S", "PAGE1", "K");
  EXPECT_EQ(
      parsedFile(file("S@!@PAGE1@!@K")).printUnformatted(),
      R"j({"id":"SCH_View","style":"background:#FFFFFF","height":"8000","width":"11000","children":[{"name":"g",)j"
      R"j("attr":{"id":"PAGE \"1\""},"children":[{"name":"circle","attr":{"cx":"1","cy":"2","r":"3",)j"
      R"j("style":"stroke:none;stroke-width:1;fill:#800000"}},{"name":"text","value":"R\\1",)j"
      R"j("attr":{"style":"stroke:#000000;stroke-width:0;font-size:7;fill:#000000",)j"
      R"j("transform":"translate(1,2) rotate(0)","dominant-baseline":"hanging"}}]}]})j");
}

TEST_F(PageExportTest, SymbolsStandInDefinitionsBeforeThePage) {
  pages.start();
  page({"Page;P;1;2;K"});
  symbol({"Line;0;0;1;1;0;0;0"});  // before the first name: dropped
  symbol({"Name;RES"});
  page({"Part;1;2;0;0;RES;id"});
  symbol({"Box;0;0;1;1;0;0;0;0;0", "Pin;0;0;;;0;0;SHORT;LEFT", "Name;CAP", "Name;RES", "Line;0;0;1;1;0;0;0"});
  finish("S", "P", "K");

  const Json parsed = parsedFile(file("S@!@P@!@K"));
  EXPECT_EQ(parsed.member("children").size(), 2U);
  const JsonView definitions = *parsed.member("children").begin();
  EXPECT_EQ(definitions.member("name").text(), "defs");
  EXPECT_FALSE(definitions.member("attr"));
  const std::string all = drawn(definitions.member("children"));
  EXPECT_EQ(
      all.substr(all.find("g id=RES")),
      "g id=RES\nrect style=stroke:#0000FF;stroke-width:1;fill:#0000FF;stroke-dasharray:0,0|x=0|y=0|width=1|height=1\n"
      "use transform=translate(0,0) rotate(180)|xlink:href=#PackagePinShort\ng id=CAP\ng id=RES\n"
      "line style=stroke:#0000FF;stroke-width:1;stroke-linecap:round|x1=0|y1=0|x2=1|y2=1\n");
}

TEST_F(PageExportTest, EachPageBecomesAFileOfItsOwn) {
  pages.start();
  page({"Schematic;S1", "Page;A/B:1;1;1;K"});
  symbol({"Name;RES"});
  page({"Schematic;con.1"});  // names the next page, not the open one; a device, which no file may be
  page({"Page;P;1;1;K", "Schematic;S2", "Page;P;1;1;K1", "Page;P;1;1;K2", "Schematic;S3", "Page;P;1;1;K1"});
  EXPECT_EQ(names(), (Names{"_con.1@!@P@!@K.json", "S1@!@A[;xiegan;]B[;maohao;]1@!@K.json", "S2@!@P@!@K1.json",
                            "S2@!@P@!@K2.json"}));
  EXPECT_NE(file("S1@!@A[;xiegan;]B[;maohao;]1@!@K").find("\"defs\""), std::string::npos);
  EXPECT_EQ(file("S2@!@P@!@K1").find("\"defs\""), std::string::npos);
  finish("Lpt1.x", "P", "K1");
  EXPECT_THAT(names(), testing::Contains("_Lpt1.x@!@P@!@K1.json"));
  EXPECT_EQ(names().size(), 5U);
}

TEST_F(PageExportTest, RecordsAtAWrongMomentAreHarmless) {
  const auto everything = [this] {
    page({"Line;0"});
    symbol({"Name;X", "Line;0", "Schematic;of a symbol", "Page;of a symbol;1;1;K"});
  };
  everything();
  finish("S", "P", "K");
  EXPECT_TRUE(names().empty());

  pages.start();
  everything();
  page({"Schematic;S"});
  finish("bare", "P", "K");
  EXPECT_EQ(file("bare@!@P@!@K"), "{\r\n\t\"id\":\t\"SCH_View\",\r\n\t\"style\":\t\"background:#FFFFFF\"\r\n}");
  finish("again", "P", "K");
  everything();

  page({"Page;without a start;1;1;K", "Page;Q;1;1;K"});
  EXPECT_EQ(names(), (Names{"bare@!@P@!@K.json", "S@!@without a start@!@K.json"}));
  pages.start();  // drops the open page, keeps the schematic's name
  page({"Page;first;1;1;K", "Page;second;1;1;K"});
  EXPECT_EQ(names(), (Names{"S@!@first@!@K.json"}));
}

TEST_F(PageExportTest, AStartEmptiesTheFolderButFollowsNoLink) {
  FakeFiles& files = fake.files;
  files.addFile(folder + "\\old.json", "x");
  files.addFile(folder + "\\sub\\deep\\old.json", "x");
  // The last two are none.
  const std::pair<std::string, std::uint32_t> links[] = {{"unknown", 0},
                                                         {"symbolic", 0xA000000C},
                                                         {"junction", 0xA0000003},
                                                         {"cloud", 0x9000001A},
                                                         {"shared", 0x80000021}};
  for (const auto& [name, tag] : links) {
    files.addFolder(folder + "\\" + name, directoryAttribute | reparsePointAttribute);
    files.addFile(folder + "\\" + name + "\\kept.json", "of another folder");
    if (tag != 0) {
      files.reparseTags[pathOf(folder + "\\" + name)] = tag;
    }
  }
  pages.start();
  EXPECT_TRUE(files.isFolder(pathOf(folder)));
  EXPECT_TRUE(names().empty());
  for (const auto& [name, tag] : links) {
    EXPECT_EQ(files.exists(folder + "\\" + name + "\\kept.json"), name != "cloud" && name != "shared") << name;
  }
  EXPECT_EQ(fake.clock.pauses(), std::vector<int>{200});
}

TEST_F(PageExportTest, AFirstStartMakesOneFolderAndAFlushTheMissingOnes) {
  pages.start();
  EXPECT_FALSE(fake.files.exists("C:\\App\\Cache"));
  EXPECT_TRUE(fake.clock.pauses().empty());
  project.set(pathOf("C:\\App\\project"));
  fake.files.addFolder("C:\\App\\project");
  page({"Page;P;1;1;K"});
  finish("S", "P", "K");
  EXPECT_NE(fake.files.bytes("C:\\App\\project\\Cache\\Output\\S@!@P@!@K.json"), "(no file)");
}

TEST_F(PageExportTest, APageThatCannotEndTakesNoMoreAndWaits) {
  pages.start();
  page({"Schematic;S", "Page;P;1;1;K"});
  fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_THROW(page({"Page;Q;1;1;L"}), std::bad_alloc);
  fake.files.faults.failCall(0);
  page({"Line;0"});  // of the next page
  symbol({"Name;X"});
  page({"Page;R;1;1;M"});
  EXPECT_EQ(names(), (Names{"S@!@P@!@K.json"}));
  EXPECT_EQ(file("S@!@P@!@K").find("line"), std::string::npos);
  EXPECT_EQ(file("S@!@P@!@K").find("defs"), std::string::npos);
  fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_THROW(page({"Page;T;1;1;N"}), std::bad_alloc);
  fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_THROW(finish("S", "T", "N"), std::bad_alloc);
  fake.files.faults.failCall(0);
  finish("S", "T", "N");  // under the name of the page that waits
  EXPECT_EQ(names(), (Names{"S@!@P@!@K.json", "S@!@R@!@M.json"}));
}

TEST_F(PageExportTest, AStartThatFailsDropsTheOpenPageToo) {
  pages.start();
  page({"Page;P;1;1;K"});
  fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_THROW(pages.start(), std::bad_alloc);
  fake.files.faults.failCall(0);
  finish("S", "P", "K");
  EXPECT_TRUE(names().empty());
}

TEST_F(PageExportTest, APageThatCannotBeWrittenIsNamedInTheLog) {
  enableTraffic();
  pages.start();
  fake.files.addFolder(folder + "\\S@!@P@!@K.json");  // in its place
  page({"Page;P;1;1;K"});
  finish("S", "P", "K");
  EXPECT_EQ(traffic(), "not written: " + folder + "\\S@!@P@!@K.json");
}

TEST_F(PageExportTest, ARequestForWhichMemoryRunsOutIsToldInABox) {
  host_.during = [](const std::string&) { throw std::bad_alloc(); };
  replyTo(plugin::companionEndpoint(), R"({"Command":"CreateSVG","Data":{"ProjectPath":"a.dsn"}})", host_);
  EXPECT_THAT(fake.messages.shown(), testing::ElementsAre(text.utf8ToAnsi(utf8(u8"处理失败"))));
}

TEST_F(PageExportTest, TextsAreShownAsTheCodePageHoldsThem) {
  const std::string chinese = utf8(u8"电阻值");
  const std::string outside = utf8(u8"电\u0E01阻值");  // a Thai letter, which the code page lacks
  const std::string gbk = "\xB5\xE7\xD7\xE8";
  const auto shown = [this](const std::string& lines, bool convert) {
    WordRecord record("Text;1;2;" + lines);
    record.showInCodePage(text, convert);
    return std::string(record[textLines]);
  };
  for (const bool convert : {true, false}) {
    EXPECT_EQ(shown(chinese, convert), chinese);
    EXPECT_EQ(shown(gbk, convert), utf8(u8"电阻"));
  }
  EXPECT_EQ(shown(outside + "\r\n" + gbk + "\r\n", false), outside + "\r\n" + utf8(u8"电阻") + "\r\n");
  EXPECT_EQ(shown(outside + "\r\n" + gbk + "\r\nA", true), utf8(u8"电?阻值\r\n电阻\r\nA"));
  EXPECT_EQ(shown(chinese + std::string(tclNul) + "x\r\nB", false), chinese);
  EXPECT_EQ(shown(outside + std::string(tclNul) + "x\r\nB", true), utf8(u8"电?阻值"));
  EXPECT_EQ(shown(chinese + "\xED\xA0\xBD\xED\xB8\x80\xED\xA0\xBD", false), chinese + utf8(u8"\U0001F600\uFFFD"));

  WordRecord record("Part" + std::string(tclNul) + "x;1;2;" + outside + ";0;" + gbk + ";" + outside);
  record.showInCodePage(text, false);
  EXPECT_EQ(record.kind(), "Part");
  EXPECT_EQ(record[3], utf8(u8"电?阻值"));
  EXPECT_EQ(record[5], utf8(u8"电阻"));
  EXPECT_EQ(record[6], utf8(u8"电?阻值"));
}

}  // namespace
}  // namespace vernoxa::drawing
