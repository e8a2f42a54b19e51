// Pages from their records to their files.
#include "drawing/page_export.h"

#include <gtest/gtest.h>

#include "drawing/drawn.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"
#include "text/json.h"
#include "text/text.h"

namespace vernoxa::drawing {
namespace {

class PageExportTest : public testing::Test {
 protected:
  PageExportTest() { fake.fake.files.addFolder("C:\\App"); }

  void page(std::initializer_list<std::string_view> words, bool convertLines = true) {
    WordRecord record(words);
    record.showInCodePage(fake.text, convertLines);
    pages.addRecord(Use::page, record, WordRecord(words));
  }
  void symbol(std::initializer_list<std::string_view> words) {
    WordRecord record(words);
    record.showInCodePage(fake.text, true);
    pages.addRecord(Use::symbol, record, WordRecord(words));
  }
  void finish(std::string_view schematic, std::string_view name, std::string_view key) {
    pages.finish({std::string(schematic), std::string(name), std::string(key)});
  }
  std::string file(const std::string& name) { return fake.fake.files.bytes(folder + "\\" + name + ".json"); }
  // Names of the files that were written.
  std::vector<std::string> names() {
    std::vector<std::string> found;
    for (const FolderEntry& entry : fake.fake.files.entries(folder)) {
      found.push_back(literalOf(FilePath::fromUtf8(entry.name)));
    }
    return found;
  }

  const std::string folder = "C:\\App\\Cache\\Output";
  FakeSession fake;
  PageExport pages{fake.project, fake.fake.files, fake.fake.processes, fake.fake.clock, fake.text, fake.logs};
};

using Names = std::vector<std::string>;

TEST_F(PageExportTest, APageToTheByte) {
  pages.start();
  page({"Page", "PAGE \"1\"", "8000", "11000", "K"});
  page({"Junction", "1", "2", "3", "24", "0"});
  page({"Text", "1", "2", "R\\1", "40", "", "-9", "0"});
  finish("S", "PAGE1", "K");
  EXPECT_EQ(file("S@!@PAGE1@!@K"), withDosLineEnds(R"page({
	"id":	"SCH_View",
	"style":	"background:#FFFFFF",
	"height":	"8000",
	"width":	"11000",
	"children":	[{
			"name":	"g",
			"attr":	{
				"id":	"PAGE \"1\""
			},
			"children":	[{
					"name":	"circle",
					"attr":	{
						"cx":	"1",
						"cy":	"2",
						"r":	"3",
						"style":	"stroke:none;stroke-width:1;fill:#800000"
					}
				}, {
					"name":	"text",
					"value":	"R\\1",
					"attr":	{
						"style":	"stroke:#000000;stroke-width:0;font-size:7;fill:#000000",
						"transform":	"translate(1,2) rotate(0)",
						"dominant-baseline":	"hanging"
					}
				}]
		}]
})page"));
}

TEST_F(PageExportTest, SymbolsStandInDefinitionsBeforeThePage) {
  pages.start();
  page({"Page", "P", "1", "2", "K"});
  symbol({"Line", "0", "0", "1", "1", "0", "0", "0"});  // before the first name: dropped
  symbol({"Name", "RES"});
  page({"Part", "1", "2", "0", "0", "RES", "id"});
  symbol({"Box", "0", "0", "1", "1", "0", "0", "0", "0", "0"});
  symbol({"Pin", "0", "0", "", "", "0", "0", "SHORT", "LEFT"});
  symbol({"Name", "CAP"});
  symbol({"Name", "RES"});
  symbol({"Line", "0", "0", "1", "1", "0", "0", "0"});
  finish("S", "P", "K");

  const auto parsed = Json::parse(file("S@!@P@!@K"));
  EXPECT_EQ(withDosLineEnds(parsed.document.printFormatted()), file("S@!@P@!@K"));
  const JsonView children = parsed.document.member("children");
  ASSERT_EQ(children.size(), 2U);
  const JsonView definitions = *children.begin();
  EXPECT_EQ(definitions.member("name").text(), "defs");
  EXPECT_FALSE(definitions.member("attr"));
  std::string symbols;
  for (const JsonView each : definitions.member("children")) {
    symbols += std::string(*each.member("attr").member("id").text()) + ":";
    for (const JsonView element : each.member("children")) {
      symbols += " " + std::string(*element.member("name").text());
    }
    symbols += "\n";
  }
  EXPECT_EQ(symbols,
            "PackagePinLongClockDot: circle line line line\nPackagePinLong: line\nPackagePinLongClock: line line line\n"
            "PackagePinLongDot: circle line\nPackagePinShortClockDot: circle line line line\nPackagePinShort: line\n"
            "PackagePinShortClock: line line line\nPackagePinShortDot: circle line\n"
            "RES: rect use\nCAP:\nRES: line\n");
}

TEST_F(PageExportTest, EachPageBecomesAFileOfItsOwn) {
  pages.start();
  page({"Schematic", "S1"});
  page({"Page", "A/B:1", "1", "1", "K"});
  symbol({"Name", "RES"});
  page({"Schematic", "con.1"});  // names the next page, not the open one; a device, which no file may be
  page({"Page", "P", "1", "1", "K"});
  page({"Schematic", "S2"});
  page({"Page", "P", "1", "1", "K1"});
  page({"Page", "P", "1", "1", "K2"});
  page({"Schematic", "S3"});
  page({"Page", "P", "1", "1", "K1"});
  const std::string first = "S1@!@A[;xiegan;]B[;maohao;]1@!@K.json";
  EXPECT_EQ(names(), (Names{"_con.1@!@P@!@K.json", first, "S2@!@P@!@K1.json", "S2@!@P@!@K2.json"}));
  EXPECT_NE(file("S1@!@A[;xiegan;]B[;maohao;]1@!@K").find("\"defs\""), std::string::npos);
  EXPECT_EQ(file("S2@!@P@!@K1").find("\"defs\""), std::string::npos);
  finish("Lpt1.x", "P", "K1");
  EXPECT_EQ(names()[1], "_Lpt1.x@!@P@!@K1.json");
  EXPECT_EQ(names().size(), 5U);
}

TEST_F(PageExportTest, RecordsAtAWrongMomentAreHarmless) {
  const auto everything = [this] {
    page({"Line", "0"});
    symbol({"Name", "X"});
    symbol({"Line", "0"});
  };
  everything();
  finish("S", "P", "K");
  EXPECT_TRUE(names().empty());

  pages.start();
  everything();
  page({"Schematic", "S"});
  finish("bare", "P", "K");
  EXPECT_EQ(file("bare@!@P@!@K"), "{\r\n\t\"id\":\t\"SCH_View\",\r\n\t\"style\":\t\"background:#FFFFFF\"\r\n}");
  finish("again", "P", "K");
  everything();

  page({"Page", "without a start", "1", "1", "K"});
  page({"Page", "Q", "1", "1", "K"});
  EXPECT_EQ(names(), (Names{"bare@!@P@!@K.json", "S@!@without a start@!@K.json"}));
  pages.start();  // drops the open page, keeps the schematic's name
  page({"Page", "first", "1", "1", "K"});
  page({"Page", "second", "1", "1", "K"});
  EXPECT_EQ(names(), (Names{"S@!@first@!@K.json"}));
}

TEST_F(PageExportTest, AStartEmptiesTheFolderButFollowsNoLink) {
  FakeFiles& files = fake.fake.files;
  files.addFile(folder + "\\old.json", "x");
  files.addFile(folder + "\\sub\\deep\\old.json", "x");
  files.addFolder(folder + "\\link", directoryAttribute | reparsePointAttribute);
  files.addFile(folder + "\\link\\kept.json", "of another folder");
  const auto tagged = [&](const char* name, std::uint32_t tag) {
    files.addFolder(folder + name, directoryAttribute | reparsePointAttribute);
    files.reparseTags[pathOf(folder + name)] = tag;
    files.addFile(folder + name + "\\kept.json", "of another folder");
  };
  tagged("\\symbolic", 0xA000000C);
  tagged("\\junction", 0xA0000003);
  tagged("\\cloud", 0x9000001A);
  pages.start();
  EXPECT_EQ(files.bytes(folder + "\\symbolic\\kept.json"), "of another folder");
  EXPECT_EQ(files.bytes(folder + "\\junction\\kept.json"), "of another folder");
  EXPECT_FALSE(files.exists(folder + "\\cloud"));
  EXPECT_TRUE(files.isFolder(pathOf(folder)));
  EXPECT_FALSE(files.exists(folder + "\\old.json"));
  EXPECT_FALSE(files.exists(folder + "\\sub"));
  EXPECT_EQ(files.bytes(folder + "\\link\\kept.json"), "of another folder");
  EXPECT_EQ(fake.fake.clock.pauses(), std::vector<int>{200});
}

TEST_F(PageExportTest, AFirstStartMakesOneFolderAndAFlushTheMissingOnes) {
  pages.start();
  EXPECT_FALSE(fake.fake.files.exists("C:\\App\\Cache"));
  EXPECT_TRUE(fake.fake.clock.pauses().empty());
  fake.project.set(pathOf("C:\\App\\project"));
  fake.fake.files.addFolder("C:\\App\\project");
  page({"Page", "P", "1", "1", "K"});
  finish("S", "P", "K");
  EXPECT_NE(fake.fake.files.bytes("C:\\App\\project\\Cache\\Output\\S@!@P@!@K.json"), "(no file)");
}

TEST_F(PageExportTest, APageThatCannotEndTakesNoMoreAndWaits) {
  pages.start();
  page({"Schematic", "S"});
  page({"Page", "P", "1", "1", "K"});
  fake.fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_THROW(page({"Page", "Q", "1", "1", "L"}), std::bad_alloc);
  fake.fake.files.faults.failCall(0);
  page({"Line", "0"});  // of the next page
  symbol({"Name", "X"});
  page({"Page", "R", "1", "1", "M"});
  EXPECT_EQ(names(), (Names{"S@!@P@!@K.json"}));
  EXPECT_EQ(file("S@!@P@!@K").find("line"), std::string::npos);
  EXPECT_EQ(file("S@!@P@!@K").find("defs"), std::string::npos);
  fake.fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_THROW(page({"Page", "T", "1", "1", "N"}), std::bad_alloc);
  fake.fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_THROW(finish("S", "T", "N"), std::bad_alloc);
  fake.fake.files.faults.failCall(0);
  finish("S", "T", "N");  // under the name of the page that waits
  EXPECT_EQ(names(), (Names{"S@!@P@!@K.json", "S@!@R@!@M.json"}));
}

TEST_F(PageExportTest, APageThatCannotBeWrittenIsNamedInTheLog) {
  fake.enableTraffic();
  pages.start();
  fake.fake.files.addFolder(folder + "\\S@!@P@!@K.json");  // in its place
  page({"Page", "P", "1", "1", "K"});
  finish("S", "P", "K");
  EXPECT_EQ(fake.traffic(), "not written: " + folder + "\\S@!@P@!@K.json");
}

TEST_F(PageExportTest, TextsAreShownAsTheCodePageHoldsThem) {
  const std::string chinese = utf8(u8"电阻值");
  const std::string outside = utf8(u8"电\u0E01阻值");  // a Thai letter, which the code page lacks
  const std::string gbk = "\xB5\xE7\xD7\xE8";
  const auto shown = [this](std::string_view text, bool convert) {
    WordRecord record{"Text", "1", "2", text, "0", "", "-9", "0"};
    record.showInCodePage(fake.text, convert);
    return std::string(record[textLines]);
  };
  EXPECT_EQ(shown(chinese, true), chinese);
  EXPECT_EQ(shown(chinese, false), chinese);
  EXPECT_EQ(shown(outside, true), utf8(u8"电?阻值"));
  EXPECT_EQ(shown(outside, false), outside);
  EXPECT_EQ(shown(gbk, true), utf8(u8"电阻"));
  EXPECT_EQ(shown(gbk, false), utf8(u8"电阻"));
  EXPECT_EQ(shown(outside + "\r\n" + gbk + "\r\n", false), outside + "\r\n" + utf8(u8"电阻") + "\r\n");
  EXPECT_EQ(shown(outside + "\r\n" + gbk + "\r\nA", true), utf8(u8"电?阻值\r\n电阻\r\nA"));

  const std::string nul(tclNul);
  EXPECT_EQ(shown(chinese + nul + "x\r\nB", false), chinese);
  EXPECT_EQ(shown(outside + nul + "x\r\nB", true), utf8(u8"电?阻值"));
  EXPECT_EQ(shown(chinese + "\xED\xA0\xBD\xED\xB8\x80\xED\xA0\xBD", false), chinese + utf8(u8"\U0001F600\uFFFD"));

  WordRecord part{"Part", "1", "2", outside, "0", gbk, outside};
  part.showInCodePage(fake.text, false);
  EXPECT_EQ(part[3], utf8(u8"电?阻值"));
  EXPECT_EQ(part[5], utf8(u8"电阻"));
  EXPECT_EQ(part[6], utf8(u8"电?阻值"));
}

}  // namespace
}  // namespace vernoxa::drawing
