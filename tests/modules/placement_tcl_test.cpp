// Placements with a real interpreter: what the host's procedures receive, and that nothing else runs.
#include "modules/module_commands.h"
#include "modules/module_document.h"
#include "modules/placement.h"
#include "modules/placement_commands.h"
#include "support/command_test_tcl.h"
#include "support/hostile_values.h"
#include "tcl/tcl_script_host.h"

namespace vernoxa::modules {
namespace {

using testing::ElementsAre;

class PlacementInTcl : public CommandTest {
 protected:
  PlacementInTcl() {
    interp_.recordEverything("list");
    interp_.define({"placeLibPart", "setPinNum", "placePart"});
    fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
    fake.files.addFile("C:\\Mods\\other.txt", "the user's");
  }

  // Places a module and gives the calls, by procedure.
  std::vector<Words> place(const std::string& module) {
    placement.dsnDatPath = "C:\\Mods\\ModuleLib.json";
    fake.files.addFile(placement.dsnDatPath, module);
    interp_.calls.clear();
    part<ModulePlacer>().placeModule(tcl_);
    return interp_.calls;
  }
  Words split(const std::string& list) { return tcl_.splitList(list).value(); }

  TclScriptHost tcl_{interp_.get()};
};

TEST_F(PlacementInTcl, AnyTextOfAModuleArrivesAndRunsNothing) {
  HostileValues hostile;
  const auto anyText = [&] {
    std::string made = hostile.next();
    std::erase_if(made, [](char c) { return c != '\n' && (c < ' ' || c == '\x7F'); });  // plain ASCII
    made += hostile.next().size() % 4 == 0 ? "\xE7\x94\xB5" : "";
    return made;
  };
  const auto json = [](const std::string& given) { return Json::string(given).printUnformatted(); };
  for (int round = 0; round < 1000; ++round) {
    const std::string key = anyText();
    const std::string value = anyText();
    std::string bare = anyText();
    std::erase_if(bare, [](char c) { return c == ' ' || c == '\n'; });
    const std::string members = R"(,"PartIndex":)" + json(bare) + R"(,"Type":)" + json(bare) + R"(,"Designator":)" +
                                json(bare) + R"(,"BoundingBox":)" + json(bare) + R"(,"Property":{)" + json(key) + ":" +
                                json(value) + R"(},"children":[{"Name":)" + json(key) + R"(,"Data":{)" +
                                json(key + "k") + ":" + json(value) + "}}]}]";
    const std::string module = R"({"lib":[{"Name":)" + json(anyText()) + members + R"(,"children":[{"Name":)" +
                               json(bare + "W") + members + "}";
    placement.selfModule = round % 2 == 0 ? "1" : bare;
    placement.uploadResId = value;

    const std::vector<Words> calls = place(module);
    ASSERT_EQ(calls.size(), 3U) << module;
    ASSERT_EQ(calls[0][0] + " " + calls[1][0] + " " + calls[2][0], "placeLibPart setPinNum placePart");
    ASSERT_EQ(calls[0].size(), 10U) << module;
    ASSERT_EQ(Words(calls[0].begin() + 1, calls[0].end()), Words(calls[1].begin() + 1, calls[1].end()));
    EXPECT_EQ(calls[0][3], bare.empty() ? "{}" : bare) << module;
    EXPECT_EQ(split(calls[0][5]), bare.empty() ? Words{} : Words{bare});
    EXPECT_EQ(split(split(calls[0][6]).at(0)), (Words{key, value}));
    const Words element0 = split(split(calls[0][7]).at(0));
    EXPECT_EQ(element0.at(0), key);
    EXPECT_EQ(split(split(element0.at(1)).at(0)), (Words{key + "k", value}));
    EXPECT_EQ(calls[2][1], bare + "W");
    const Words properties = split(calls[2][3]);
    EXPECT_EQ(split(properties.at(properties.size() - 2)), (Words{"MarketResID", value}));
  }
}

// What the export writes is what the placement reads.
TEST_F(PlacementInTcl, ExportedModuleIsPlacedBack) {
  fake.files.addFolder("C:\\App\\Cache");
  call(plugin::run<initMarketFile>);
  const std::string value = utf8(u8"阻值 10%");
  for (const std::string& record :
       {std::string("Name RES Part 0 0 20 10 1 A"), std::string("PartProperty Mark \xED\xA0\xBD\xED\xB8\x80\xC0\x80x"),
        "PartProperty Value {" + value + "}", std::string("Polyline 1 2 3 0 1 {1,2 3,4}"),
        std::string("Pin 0 5 -10 5 1 IN Passive")}) {
    call(plugin::run<addMarketLibList>, {record});
  }
  for (const char* record : {"Part 100 200 1 0 RES 7", "Property {Part Reference} R@1", "Property Own x",
                             "DispProperty 3 4 Value 10k 5 6 7 8", "Junction 5 6"}) {
    call(plugin::run<addMarketPartList>, {record});
  }
  EXPECT_TRUE(fake.files.removeFolder("C:\\App\\Cache\\Share"));  // whoever cleans up: they are made again
  EXPECT_TRUE(fake.files.removeFolder("C:\\App\\Cache"));
  const std::string path = call(plugin::run<outputMarketFile>, {"0", "300", "200", ""}).text;
  EXPECT_EQ(path, "C:\\App\\Cache\\Share\\ModuleLib.json");
  EXPECT_EQ(placement.dsnDatPath, path);
  const std::string file = fake.files.bytes(path);
  EXPECT_TRUE(file.starts_with("{\r\n\t\"children\":\t[{\r\n")) << file;
  EXPECT_NE(file.find("\"BoundingBox\":\t\"300 200\""), std::string::npos) << file;
  const std::vector<Words> calls = place(file);
  ASSERT_EQ(calls.size(), 4U);
  EXPECT_THAT(calls[0],
              ElementsAre("placeLibPart", "C:/Mods/1.olb", "RES", "1", "Part", "0 0 20 10",
                          "{Mark " + utf8(u8"\U0001F600") + "} {Value {" + value + "}}",
                          "{Polyline {{PolylineStart {1 2}} {Color 3} {Style 0} {Width 1} {Color 3} {NewPoint 1,2} "
                          "{NewPoint 3,4}} {}} {Pin {{StartPoint {0 5}} {HotSpot {-10 5}} {PinName IN} {PinNum 1} "
                          "{PinType Passive}} {}}",
                          "", "A"));
  EXPECT_THAT(calls[2],
              ElementsAre("placePart", "Part", "0",
                          "{{Part Reference} R_1} {NimbMarket Part} {MarketResID {}} {MarketUserID {}}",
                          "{Location {100 200}} {Rotation 1} {Mirror 0} {Package RES}",
                          "{Name Value} {Value 10k} {Color 5} {Rotation 8} {FontId 6} {Size 7} {Start {3 4}}"));
  EXPECT_EQ(calls[3][1], "Junction");
  EXPECT_EQ(fake.files.bytes("C:\\Mods\\other.txt"), "the user's");

  enableTraffic();
  fake.files.removeFile(path);
  fake.files.addFolder(path);  // in its place
  call(plugin::run<initMarketFile>);
  call(plugin::run<outputMarketFile>, {"0", "300", "200", ""});
  EXPECT_EQ(traffic(), "not written: " + path);
}

TEST_F(PlacementInTcl, PathsOfTheLibrariesAreAnswered) {
  EXPECT_EQ(call(plugin::run<getOlbPath>).text, "/123456.olb");
  EXPECT_EQ(call(plugin::run<getNewOlbPath>).text, "/Test.olb");
  placement.dsnDatPath = u8"D:\\乗\\模块\\a.json"_gbk;
  EXPECT_EQ(call(plugin::run<getOlbPath>).text, utf8(u8"D:/乗/模块/123456.olb"));
}

}  // namespace
}  // namespace vernoxa::modules
