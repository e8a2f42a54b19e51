// Placements with a real interpreter: what the host's procedures receive, and that nothing else runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modules/module_commands.h"
#include "modules/module_document.h"
#include "modules/placement.h"
#include "modules/placement_commands.h"
#include "support/hostile_values.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"
#include "tcl/tcl_script_host.h"
#include "text/gbk_literal.h"
#include "text/text.h"

namespace vernoxa::modules {
namespace {

using testing::ElementsAre;

class PlacementInTcl : public testing::Test {
 protected:
  PlacementInTcl() {
    // An interpreter that knows lists and the placing procedures; all else is recorded as unknown.
    for (const std::string& name : tcl_.commands()) {
      if (name != "list" && name != "rename") {
        tcl_.evaluate("rename {" + name + "} {}");
      }
    }
    tcl_.evaluate("rename rename {}");
    tcl_.define({"placeLibPart", "setPinNum", "placePart", "unknown"});
    with_.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
    with_.placement.dsnDatPath = "C:\\Mods\\ModuleLib.json";
    with_.fake.files.addFile("C:\\Mods\\other.txt", "the user's");
  }

  // Places a module and gives the calls, by procedure.
  std::vector<Words> place(const std::string& module) {
    with_.fake.files.addFile("C:\\Mods\\ModuleLib.json", module);
    with_.placement.dsnDatPath = "C:\\Mods\\ModuleLib.json";
    tcl_.calls.clear();
    with_.part<ModulePlacer>().placeModule(host_);
    return tcl_.calls;
  }
  Words split(const std::string& list) { return host_.splitList(list).value(); }

  TclInterp tcl_;
  TclScriptHost host_{tcl_.get()};
  FakeSession with_;
};

TEST_F(PlacementInTcl, AnyTextOfAModuleArrivesAndRunsNothing) {
  HostileValues hostile;
  const auto text = [&] {
    std::string made = hostile.next();
    std::erase_if(made, [](char c) { return c != '\n' && (c < ' ' || c == '\x7F'); });  // plain ASCII
    made += hostile.next().size() % 4 == 0 ? "\xE7\x94\xB5" : "";
    return made;
  };
  for (int round = 0; round < 1000; ++round) {
    const std::string key = text();
    const std::string value = text();
    std::string bare = text();
    std::erase_if(bare, [](char c) { return c == ' ' || c == '\n'; });
    Json module = Json::object();
    const JsonView library = module.add("lib", Json::array());
    Json part = Json::object();
    part.add("Name", text());
    for (const char* member : {"PartIndex", "Type", "Designator", "BoundingBox"}) {
      part.add(member, bare);
    }
    part.addTo(part.add("Property", Json::object()), key, Json::string(value));
    Json element = Json::object();
    element.add("Name", key);
    element.addTo(element.add("Data", Json::object()), key + "k", Json::string(value));
    part.appendTo(part.add("children", Json::array()), std::move(element));
    Json object = Json::copyOf(part.view());
    object.set(object.view(), "Name", bare + "W");
    module.appendTo(library, std::move(part));
    module.appendTo(module.add("children", Json::array()), std::move(object));
    with_.placement.selfModule = round % 2 == 0 ? "1" : bare;
    with_.placement.uploadResId = value;

    const std::vector<Words> calls = place(module.printFormatted());
    ASSERT_EQ(calls.size(), 3U) << module.printFormatted();
    ASSERT_EQ(calls[0][0], "placeLibPart");
    ASSERT_EQ(calls[1][0], "setPinNum");
    ASSERT_EQ(calls[2][0], "placePart");
    ASSERT_EQ(calls[0].size(), 10U) << module.printFormatted();
    ASSERT_EQ(Words(calls[0].begin() + 1, calls[0].end()), Words(calls[1].begin() + 1, calls[1].end()));
    EXPECT_EQ(calls[0][3], bare.empty() ? "{}" : bare) << module.printFormatted();
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
  const auto call = [&](auto command, const Words& given) {
    const TclWords words(given);
    const Arguments arguments = words.arguments();
    CommandCall each{arguments, host_};
    return command(each, with_.session).text;
  };
  with_.fake.files.addFolder("C:\\App\\Cache");
  call(plugin::run<initMarketFile>, {"init"});
  const std::string value = utf8(u8"阻值 10%");
  for (const std::string& record :
       {std::string("Name RES Part 0 0 20 10 1 A"), std::string("PartProperty Mark \xED\xA0\xBD\xED\xB8\x80\xC0\x80x"),
        "PartProperty Value {" + value + "}", std::string("Polyline 1 2 3 0 1 {1,2 3,4}"),
        std::string("Pin 0 5 -10 5 1 IN Passive")}) {
    call(plugin::run<addMarketLibList>, {"lib", record});
  }
  for (const char* record : {"Part 100 200 1 0 RES 7", "Property {Part Reference} R@1", "Property Own x",
                             "DispProperty 3 4 Value 10k 5 6 7 8", "Junction 5 6"}) {
    call(plugin::run<addMarketPartList>, {"part", record});
  }
  with_.fake.files.removeFolder("C:\\App\\Cache\\Share");  // whoever cleans up: they are made again
  with_.fake.files.removeFolder("C:\\App\\Cache");
  const std::string path = call(plugin::run<outputMarketFile>, {"output", "0", "300", "200", ""});
  EXPECT_EQ(path, "C:\\App\\Cache\\Share\\ModuleLib.json");
  EXPECT_EQ(with_.placement.dsnDatPath, path);
  const std::string file = with_.fake.files.bytes(path);
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
  EXPECT_THAT(calls[3],
              ElementsAre("placePart", "Junction", "0", "{NimbMarket Junction} {MarketResID {}} {MarketUserID {}}",
                          "{StartX 5} {StartY 6}", ""));
  EXPECT_EQ(with_.fake.files.bytes("C:\\Mods\\other.txt"), "the user's");

  with_.enableTraffic();
  with_.fake.files.removeFile(path);
  with_.fake.files.addFolder(path);  // in its place
  call(plugin::run<initMarketFile>, {"init"});
  call(plugin::run<outputMarketFile>, {"output", "0", "300", "200", ""});
  EXPECT_EQ(with_.traffic(), "not written: " + path);
}

TEST_F(PlacementInTcl, PathsOfTheLibrariesAreAnswered) {
  const TclWords words({"getOlbPath"});
  const Arguments arguments = words.arguments();
  CommandCall call{arguments, host_};
  with_.placement.dsnDatPath.clear();
  EXPECT_EQ(getOlbPath(call, with_.part<LibraryFiles>()).text, "/123456.olb");
  EXPECT_EQ(getNewOlbPath(call, with_.part<LibraryFiles>()).text, "/Test.olb");
  with_.placement.dsnDatPath = u8"D:\\乗\\模块\\a.json"_gbk;
  EXPECT_EQ(getOlbPath(call, with_.part<LibraryFiles>()).text, utf8(u8"D:/乗/模块/123456.olb"));
}

}  // namespace
}  // namespace vernoxa::modules
