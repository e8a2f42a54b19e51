// The commands of the drawing export as a host's script calls them.
#include <gtest/gtest.h>
#include <tcl.h>

#include "support/loaded_plug_in_tcl.h"

namespace vernoxa::drawing {
namespace {

class ExportCommands : public testing::Test, protected LoadedPlugIn {
 protected:
  ExportCommands() {
    fake.files.addFolder("C:\\App\\Cache");
    plugin::startUp(interp.get(), plugIn);
    interp.define("GetProductVersion", [this](const Words&) {
      interp.evaluate(whenAsked);
      return Evaluation{true, version};
    });
  }

  std::string run(const std::string& script) {
    const auto answer = interp.evaluate(script);
    EXPECT_EQ(answer.status, TCL_OK) << script << ": " << answer.text;
    return answer.text;
  }
  bool holds(const std::string& page, const std::string& text) {
    return fake.files.bytes("C:\\App\\Cache\\Output\\S@!@" + page + "@!@K.json").find(text) != std::string::npos;
  }

  TclInterp interp;
  std::string version = "17.4";
  std::string whenAsked;
};

TEST_F(ExportCommands, APageThroughItsCommands) {
  for (const char* script :
       {"initSVGList", "addToPageList {Schematic S}", "addToPageList {Page P 1 2 K}", "addToLibList {Name RES}",
        "addToPageList [list Part 1 2 0 0 RES]",                // without its id
        "addToPageList [list Box 1 2 3 4 5 6 7 8 9 10 11 12]",  // longer than any record
        "addToPageList {not a \"list\"x}; addToPageList; addToLibList; addToPageList {}",
        "outputSVGFile [list S P unread unread K]", "outputSVGFile"}) {
    EXPECT_EQ(run(script), "") << script;
  }
  EXPECT_TRUE(holds("P", "\"id\":\t\"\",\r\n\t\t\t\t\t\t\"transform\":\t\"translate(1 2) rotate(0) scale(1,1)\""));
  EXPECT_TRUE(holds("P", "\"id\":\t\"RES\""));
  EXPECT_EQ(fake.files.entries("C:\\App\\Cache\\Output").size(), 1U);
}

TEST_F(ExportCommands, TheHostIsAskedOnceAnExportAndOnlyForChineseTexts) {
  const std::string chinese = "addToPageList [list Text 1 2 \\u7535\\u963b\\u503c 0 {} -9 0]; ";
  run("initSVGList; addToPageList {Page P 1 2 K}; addToPageList {Text 1 2 R1 0 {} -9 0}");
  EXPECT_EQ(interp.calls.size(), 0U);
  run(chinese + chinese + "addToLibList [list Text 1 2 \\u7535\\u963b\\u503c 0 {} -9 0]");
  EXPECT_EQ(interp.calls.size(), 1U);
  run("outputSVGFile {S P - - K}; initSVGList; addToPageList {Page P 1 2 K}; " + chinese);
  EXPECT_EQ(interp.calls.size(), 2U);
}

TEST_F(ExportCommands, TextsOfOldHostsStayAsTheyAre) {
  const std::string text = "[list Text 1 2 \\u7535\\u00e4\\u963b\\u503c 0 {} -9 0]";  // code page 936 has no such a
  for (const auto& [host, shown] : {std::pair<std::string, std::u8string>("17.4", u8"电?阻值"),
                                    {"16.5", u8"电ä阻值"},
                                    {"16.3", u8"电ä阻值"},
                                    {"16.50", u8"电?阻值"}}) {
    version = host;
    run("initSVGList; addToPageList {Page P 1 2 K}; addToPageList " + text + "; outputSVGFile {S P - - K}");
    EXPECT_TRUE(holds("P", utf8(shown))) << host;
  }
}

TEST_F(ExportCommands, AHostThatExportsWhileItIsAskedBreaksNothing) {
  whenAsked = "initSVGList; addToPageList {Page Q 1 2 K}; addToPageList {Line 1 2 3 4 0 0 0}";
  run("initSVGList; addToPageList {Page P 1 2 K}; addToPageList [list Text 1 2 \\u7535\\u963b\\u503c 0 {} -9 0]; "
      "outputSVGFile {S Q - - K}");
  EXPECT_TRUE(holds("Q", "\"x1\":\t\"1\""));
  EXPECT_TRUE(holds("Q", utf8(u8"电阻值")));
}

TEST_F(ExportCommands, GraphicLibraries) {
  EXPECT_EQ(run("initGraphicFile; addGraphicLibList [list Name \\ud83d\\ude00\\u0000x]; addGraphicLibList;"
                "outputGraphicFile lib/a:b"),
            "C:/App/Cache/Library/lib-a-b.json");
  EXPECT_NE(fake.files.bytes("C:\\App\\Cache\\Library\\lib-a-b.json").find('"' + utf8(u8"\U0001F600") + '"'),
            std::string::npos);
  EXPECT_EQ(run("outputGraphicFile NUL"), "C:/App/Cache/Library/_NUL.json");
}

TEST_F(ExportCommands, NamesWithOtherCharacters) {
  EXPECT_EQ(run("list [checkCharIllegal R1] [checkCharIllegal {}] [checkCharIllegal] [checkCharIllegal R\\u00e4]"),
            "0 1 1 1");
}

}  // namespace
}  // namespace vernoxa::drawing
