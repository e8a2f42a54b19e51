#include "modules/placement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "modules/library_files.h"
#include "support/fake_script_host.h"
#include "support/table.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"
#include "text/outside_json.h"
#include "text/text.h"

namespace vernoxa::modules {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* modulePath = "C:\\Mods\\7\\ModuleLib.json";
constexpr const char* emptyLibrary = "C:\\App\\config\\Resource\\Empty.olb";

// One library part, one wire of the page.
constexpr const char* smallModule = R"({
  "children": [{"name": "Wire", "Property": {"Color": "3", "Cost": "9"}, "UserProperty": {"Value": "v", "Own": "o"},
                "DispProperty": [{"Name": "n", "Value": "v"}], "Data": {"WireStart": "1 2", "path": "1,2 3,4 5 6 7"}}],
  "lib": [{"Name": "RES", "PartIndex": "1", "Designator": "A", "Type": "Part", "BoundingBox": "0 0 20 10",
           "Property": {"Value": "R[1]", "n": 5}, "DispProperty": [{"Name": "Value", "Size": "9"}, {"Name": "x"}],
           "children": [{"Name": "Polyline", "Property": {"p": "q"}, "Data": {"Color": "3", "path": "1,2 3,4"}}]},
          {"Name": "RES", "Type": "Again"}, "no object", {"name": "A\\B}"}],
  "BoundingBox": "300 200"})";

class Placement : public testing::Test {
 protected:
  Placement() {
    with_.enableTraffic();
    with_.fake.files.addFile(emptyLibrary, "OLB");
    with_.fake.random.numbers = {5, 6};
    with_.placement.dsnDatPath = modulePath;
    write(smallModule);
  }
  void write(const std::string& module) { with_.fake.files.addFile(modulePath, module); }
  PlacedLibrary placeLibraryOnly(DraggedBox box = DraggedBox::none) { return placer_.placeLibrary(host_, box); }
  // What the module's folder holds.
  std::vector<std::string> files() {
    std::vector<std::string> names;
    for (const FolderEntry& entry : with_.fake.files.entries("C:\\Mods\\7")) {
      names.push_back(entry.name);
    }
    return names;
  }

  FakeSession with_;
  ModulePlacer& placer_ = with_.part<ModulePlacer>();
  FakeScriptHost host_;
};

const std::string resistor =
    R"(C:/Mods/7/5.olb {RES} 1 Part [list 0 0 20 10] [list [list "Value" "R\[1\]"]] )"
    R"([list [list "Polyline" [list [list "Color" "3"] [list "NewPoint" "1,2"] [list "NewPoint" "3,4"]] )"
    R"([list [list "p" "q"]]]] [list [list "Name" "Value"] [list "Size" "9"] [list "Name" "x"]] A)";
const std::string oddPart = R"(C:/Mods/7/5.olb A\\B} [list ""] [list ""] [list ] [list] [list] [list] [list ""])";

TEST_F(Placement, LibraryPartsAreWrittenOnceEach) {
  const PlacedLibrary placed = placeLibraryOnly(DraggedBox::made);
  EXPECT_TRUE(placed.made);
  EXPECT_EQ(placed.newLibrary.utf8(), "C:/Mods/7/6.olb");
  EXPECT_THAT(host_.scripts,
              ElementsAre("placeLibPart " + resistor, "placeLibPart " + oddPart,
                          R"(placeLibPart C:/Mods/7/5.olb {ViewBox} 0 ViewBox [list 0 0 300 200] [list [list "" ""]] )"
                          R"([list [list "Box" [list [list "UpperLeft" "0 0"] [list "LowerRight" "300 200"]] )"
                          R"([list [list "" ""]]]] [list [list "" ""]] [list ""])",
                          "setPinNum " + resistor, "setPinNum " + oddPart));
  EXPECT_THAT(with_.traffic(), HasSubstr("placeLibPart " + resistor));
  EXPECT_THAT(files(), ElementsAre("6.olb", "ModuleLib.json"));
}

TEST_F(Placement, ObjectsOfAModuleArePlaced) {
  with_.placement.uploadResId = "12";
  with_.placement.uploadUserId = u8"用户"_gbk;
  const std::string tail =
      R"([list "NimbMarket" "Wire"] [list "MarketResID" "12"] [list "MarketUserID" ")" + utf8(u8"用户") + R"("])";
  const std::string data =
      R"( [list [list "WireStart" "1 2"] [list "NewPoint" "1 2"] [list "NewPoint" "3 4"] [list "NewPoint" "5 6"]] )"
      R"([list [list "Name" "n"] [list "Value" "v"]])";
  const struct {
    const char* designator;
    std::string expected;
  } cases[] = {
      {"0", R"(placePart Wire 0 [list [list "Color" "3"] )" + tail + R"( [list "Value" "v"]])" + data},
      {"", R"(placePart Wire {} [list [list "Color" "3"] )" + tail + R"( [list "Value" "v"]])" + data},
      {"1", R"(placePart Wire 1 [list [list "Color" "3"] [list "Cost" "9"] )" + tail +
                R"( [list "Value" "v"] [list "Own" "o"]])" + data},
  };
  for (const auto& each : cases) {
    host_.scripts.clear();
    write(smallModule);
    with_.placement.selfModule = each.designator;
    placer_.placeModule(host_);
    EXPECT_EQ(host_.scripts.back(), each.expected);
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_TRUE(with_.traffic().ends_with("\nover!!!"));
  }
}

// Of somebody else's module no property comes along but the host's own.
TEST_F(Placement, ObjectsOfAForeignModuleKeepTheHostsProperties) {
  const std::string host =
      "PCB Footprint;Name;Part Reference;Reference;Part Number;Part Name;Part Type;Value;Primitive;Implementation Type;"
      "Implementation;Implementation Path;Color;Power Pins Visible;Graphic;Net Name;Rotation;Font;NODENAME;PSpiceOnly;"
      "Connected Net name;Type;Text;Line Style;Line Width;Fill Style;Hatch Style;IREF";
  std::string written;
  std::string kept;
  for (const std::string& name : splitItems(host, ';')) {
    written += "\"" + name + R"(":"1",")" + name + R"(x":"2",)";
    kept += "[list \"" + name + "\" \"1\"] ";
  }
  write(R"({"lib":[{"Name":"R"}],"children":[{"name":"Wire","Property":{)" + written + R"("Own":"3"}}]})");
  placer_.placeModule(host_);
  EXPECT_THAT(host_.scripts.back(), StartsWith("placePart Wire 0 [list " + kept + "[list \"NimbMarket\""));
}

TEST_F(Placement, CataloguePartIsPlacedAtItsFixedPlace) {
  PlacementContext& placement = with_.placement;
  placement.placeState = 1;
  placement.PartIndex = "2";
  placement.selfModule = "A";
  placement.packageName = "0603";
  placement.PartNumber = "PN[1]";
  placement.PartName = u8"电阻"_gbk;
  placement.prefix = "U";
  placement.value = "10\"k";
  placer_.placeModule(host_);
  EXPECT_EQ(
      host_.scripts.back(),
      R"(placePart Part -1 [list [list Location "10 10"] [list Rotation 0] [list Mirror 0] [list Package RES] )"
      R"([list PartIndex 2] [list Designator "A"]] [list [list "PCB Footprint" 0603] [list "Part Number" PN\[1\]] )"
      R"([list "Part Name" )" +
          utf8(u8"电阻") + R"(] [list "Part Reference" U1A] [list "Value" "10\"k"]] [list])");
  EXPECT_EQ(placement.placeState, 0);
  EXPECT_THAT(files(), IsEmpty());

  write(R"({"lib":[7],"children":[{"name":"Part"}]})");
  placement.placeState = 1;
  placer_.placeModule(host_);
  EXPECT_THAT(host_.scripts.back(), HasSubstr("[list Package ]"));  // none of its parts is one
}

TEST_F(Placement, BadModulePlacesNothingAndLeavesNothing) {
  const std::string deep(100000, '[');
  const std::string many = replaceAll(std::string(250'000, ' '), " ", "0,");
  const struct {
    std::string module;
    const char* logged;
  } cases[] = {
      {"", "root is null"},
      {std::string(smallModule).substr(0, 400), "root is null"},
      {R"({"lib":)" + deep, "JSON refused: nested deeper than 1000 levels\nroot is null"},
      {R"({"lib":[)" + std::string(longestOutsideJson, ' ') + "]}", "JSON refused: longer than 32 MB\nroot is null"},
      {R"({"lib":[)" + many + "0]}", "module refused: more than 250000 parts or objects\nroot is null"},
      {R"({"lib":[],"children":[)" + many + "0]}", "module refused: more than 250000 parts or objects\nroot is null"},
      {"[]", "libItem is null"},
      {"{}", "libItem is null"},
      {R"({"Lib":[]})", "libItem is null"},
      {R"({"lib":{"Name":"R"},"BoundingBox":"1 2"})", "libItem is null"},
  };
  for (const auto& each : cases) {
    write(each.module);
    with_.placement.placeState = 1;
    placer_.placeModule(host_);
    EXPECT_THAT(host_.scripts, IsEmpty()) << each.module.substr(0, 40);
    EXPECT_THAT(with_.traffic(), testing::EndsWith(each.logged)) << each.module.substr(0, 40);
    EXPECT_THAT(files(), ElementsAre("ModuleLib.json"));
    EXPECT_EQ(with_.placement.placeState, 0);
  }
  with_.fake.files.removeFile(modulePath);
  EXPECT_FALSE(placeLibraryOnly().made);
  EXPECT_THAT(with_.traffic(), testing::EndsWith("root is null"));
}

TEST_F(Placement, ALibraryThatCannotBeMadeIsNamedOnceInTheLogAndInNoScript) {
  with_.hostExecutable.set(pathOf("D:\\Cadence\\Capture.exe"));
  const std::string folder = "C:\\Mods\\7\\";
  const struct {
    std::function<void()> spoil;
    std::string removedByTheHost;
    std::string logged;
  } cases[] = {
      {[this] { with_.fake.files.removeFile(emptyLibrary); }, "",
       "C:/Mods/7/5.olb: no C:\\App\\config\\Resource\\Empty.olb and no D:\\Cadence\\config\\Resource\\Empty.olb"},
      {[this] { with_.fake.files.addFolder(emptyLibrary); }, "",  // in its place
       "C:/Mods/7/5.olb: copy of C:\\App\\config\\Resource\\Empty.olb failed, error 2"},
      {[this] { with_.fake.files.addFile(emptyLibrary, "OLB"); }, folder + "5.olb",
       "C:/Mods/7/6.olb: copy of C:/Mods/7/5.olb failed, error 2"},
      {[&] {
         with_.fake.files.addFile(folder + "5.olb", "the user's");
         with_.fake.random.numbers.assign(20000, 5);
       },
       "", "C:/Mods/7/*.olb: no free name"},
  };
  std::size_t logged = 0;
  for (const auto& each : cases) {
    with_.fake.random.numbers = {5, 6};
    each.spoil();
    host_.scripts.clear();
    host_.during = [&](const std::string&) { with_.fake.files.removeFile(each.removedByTheHost); };
    placer_.placeModule(host_);
    EXPECT_THAT(host_.scripts, SizeIs(each.removedByTheHost.empty() ? 0 : 4));
    EXPECT_THAT(host_.scripts, testing::Each(testing::Not(StartsWith("placePart"))));
    const std::string traffic = with_.traffic();
    EXPECT_THAT(traffic, testing::EndsWith("library not made: " + each.logged));
    EXPECT_EQ(splitFields(replaceAll(traffic, "library not made", "\1"), '\1').size(), ++logged + 1);
    EXPECT_EQ(with_.fake.files.bytes(modulePath), smallModule);  // for another try
  }
  EXPECT_EQ(with_.fake.files.bytes(folder + "5.olb"), "the user's");
  with_.fake.random.numbers.assign(9999, 5);
  with_.fake.random.numbers.insert(with_.fake.random.numbers.end(), {7, 8});
  EXPECT_EQ(placeLibraryOnly().newLibrary.utf8(), "C:/Mods/7/8.olb");  // after the most tries that are made
}

// Of another type is as good as missing, and costs no more than itself.
TEST_F(Placement, MembersOfWrongTypesCountAsMissing) {
  const std::string missing = R"( [list ""] [list ""] [list ] [list] [list] [list] [list ""])";
  const std::string market = R"( [list "MarketResID" ""] [list "MarketUserID" ""])";
  const struct {
    const char* module;
    std::string part;    // what follows the library's path
    std::string object;  // the last script
  } cases[] = {
      {R"({"lib":[null,[],"x",{"Name":7,"PartIndex":[],"Type":null,"Designator":2,"BoundingBox":1}],"children":[{"name":"Wire"}]})",
       "{}" + missing, R"(placePart Wire 0 [list [list "NimbMarket" "Wire"])" + market + "] [list] [list]"},
      {R"({"lib":[{"Name":"R","Property":["x"],"DispProperty":{"a":{"b":"c"}},"children":{"a":{"Name":"Line"}}}],
           "children":[1,{"name":"Wire","Property":["x"],"UserProperty":[["y"]],"DispProperty":{"a":{"b":"c"}},"Data":["z"]}]})",
       "{R}" + missing, R"(placePart Wire 0 [list [list "NimbMarket" "Wire"])" + market + "] [list] [list]"},
      {R"({"lib":[{"Name":"R","DispProperty":[["x"],"y",{"n":1,"m":"v"}],"children":[1,["a"],{"Name":5,"name":"Arc",
           "Data":[1,"y"],"Property":{"a":null,"b":true,"c":"d"}}]}],"children":[{"Name":5,"name":["x"],"Data":{"path":7,
           "Color":"3"}}]})",
       R"({R} [list ""] [list ""] [list ] [list] [list [list "Arc" [list] [list [list "c" "d"]]]] [list [list "m" "v"]] [list ""])",
       R"(placePart {} 0 [list [list "NimbMarket" ""])" + market + R"(] [list [list "Color" "3"]] [list])"},
      {R"({"lib":[{"Name":"R"}],"children":{"a":{"name":"Wire"}}})", "{R}" + missing, "setPinNum "},
  };
  for (const auto& each : cases) {
    write(each.module);
    with_.fake.random.numbers = {5, 6};
    host_.scripts.clear();
    placer_.placeModule(host_);
    EXPECT_EQ(host_.scripts.front(), "placeLibPart C:/Mods/7/5.olb " + each.part);
    EXPECT_THAT(host_.scripts.back(), StartsWith(each.object));
  }
  // Parts without a name are no doubles of each other.
  write(R"({"lib":[{"Name":7},{"Name":8},{"Type":"T"},{"Name":"R"},{"Name":"R"}]})");
  host_.scripts.clear();
  EXPECT_TRUE(placeLibraryOnly().made);
  EXPECT_THAT(host_.scripts, SizeIs(8));
}

// A bracket in a module is two characters of a script.
TEST_F(Placement, AnEndlessScriptIsLeftOut) {
  constexpr std::size_t most = std::size_t{8} << 20U;
  const auto object = [](const std::string& value) { return R"({"name":"E","Property":{"Value":")" + value + "\"}}"; };
  const std::string endless = object(std::string(most / 2, '['));
  write(R"({"lib":[)" + endless + R"(,{"Name":"R"}],"children":[)" + endless + "," +
        object(std::string(most - 4096, 'x')) + R"(,{"name":"Wire"}]})");
  placer_.placeModule(host_);
  EXPECT_THAT(host_.scripts,
              ElementsAre(StartsWith("placeLibPart C:/Mods/7/5.olb {R}"), StartsWith("setPinNum C:/Mods/7/5.olb {R}"),
                          StartsWith("placePart E"), StartsWith("placePart Wire")));
  const auto refused = splitFields(replaceAll(with_.traffic(), "not placed: a script of more than 8 MB", "\1"), '\1');
  EXPECT_EQ(refused.size(), 3U);
}

TEST_F(Placement, NamesInUseAreDrawnAgain) {
  with_.fake.files.addFile("C:\\Mods\\7\\1.OLBlck", "");
  with_.fake.files.addFile("C:\\Mods\\7\\2.olb", "the user's");
  with_.fake.files.addFile("C:\\Mods\\7\\3_0.OBK", "the user's");
  with_.fake.random.numbers = {1, 2, 3, 4, 4, 2, 8};
  EXPECT_EQ(placeLibraryOnly().newLibrary.utf8(), "C:/Mods/7/8.olb");
  EXPECT_THAT(host_.scripts.front(), StartsWith("placeLibPart C:/Mods/7/4.olb "));
  EXPECT_THAT(files(), ElementsAre("1.OLBlck", "2.olb", "3_0.OBK", "8.olb", "ModuleLib.json"));
  EXPECT_EQ(with_.fake.files.bytes("C:\\Mods\\7\\2.olb"), "the user's");
}

TEST_F(Placement, BaseLibraryIsLookedForInTwoPlaces) {
  with_.fake.files.removeFile(emptyLibrary);
  with_.fake.files.addFile("D:\\Cadence\\bin\\config\\Resource\\Empty.olb", "second");
  with_.hostExecutable.set(pathOf("D:\\Cadence\\bin\\Capture.exe"));
  with_.project.set(pathOf("C:\\Project"));
  EXPECT_TRUE(placeLibraryOnly().made);
  EXPECT_EQ(with_.fake.files.bytes("C:\\Mods\\7\\6.olb"), "second");
}

// Whatever call of the file system fails or throws, no temporary library stays and no file but the placement's own
// goes.
TEST_F(Placement, EveryFailureOfTheFilesLeavesTheUsersFiles) {
  with_.fake.files.addFile("C:\\Mods\\7\\5.olb", "the user's");
  host_.during = [this](const std::string&) { with_.fake.files.addFile("C:\\Mods\\7\\6_0.OBK", "backup"); };
  for (const auto kind : {Faults::Kind::fail, Faults::Kind::throwBadAlloc}) {
    for (int call = 1; call < 80; ++call) {
      with_.fake.random.numbers = {5, 6, 7};  // 5 is the user's, and looks free when the question fails
      write(smallModule);
      with_.fake.files.faults.failCall(call, kind);
      try {
        placer_.placeModule(host_);
      } catch (const std::bad_alloc&) {
      }
      with_.fake.files.faults.failCall(0);
      EXPECT_EQ(with_.fake.files.bytes("C:\\Mods\\7\\5.olb"), "the user's");
      EXPECT_EQ(with_.fake.files.bytes(emptyLibrary), "OLB");
      for (const char* made : {"C:\\Mods\\7\\6.olb", "C:\\Mods\\7\\7.olb", "C:\\Mods\\7\\6_0.OBK"}) {
        with_.fake.files.removeFile(made);  // one failed removal may leave one file of our own
      }
    }
  }
}

TEST_F(Placement, FilesOfTheUserAreNeverRemoved) {
  for (const char* path : {"C:\\Mods\\7\\board.DSN", "C:\\Mods\\7\\board.opj", "C:\\Mods\\7\\parts.olb"}) {
    with_.fake.files.addFile(path, smallModule);
    with_.placement.dsnDatPath = path;
    placer_.placeModule(host_);
    EXPECT_EQ(with_.fake.files.bytes(path), smallModule);
    EXPECT_THAT(splitFields(with_.traffic(), '\n'), Contains(std::string("not removed: ") + path));
  }
  // The system finds the same files by these.
  for (const char* path :
       {"C:\\Mods\\7\\a.dsn.", "C:\\Mods\\7\\a.Opj ", "C:\\Mods\\7\\a.olb. .", "C:\\Mods\\7\\a:b",
        "C:\\Mods\\7\\b.dsn\\.", "C:/Mods/7/b.opj/x/..", "C:\\Mods\\7\\b.olb\\.\\.", "C:\\Mods\\7\\c.dsn\\",
        "\\\\?\\C:\\Mods\\7\\d.dsn", "\\\\.\\C:\\Mods\\7\\d.opj", "//?/C:/Mods/7/plain:stream", "D:ata:x"}) {
    with_.fake.files.addFile(path, "");
    with_.part<LibraryFiles>().remove(pathOf(path));
    EXPECT_THAT(splitFields(with_.traffic(), '\n'), Contains(std::string("not removed: ") + path));
  }
  EXPECT_THAT(files(), SizeIs(12));  // and no library left behind
  // The drive of a path as the system itself writes it begins no other name.
  for (const char* path : {"\\\\?\\C:\\Mods\\own.json", "\\\\.\\C:\\Mods\\own.json"}) {
    with_.fake.files.addFile(path, "");
    with_.part<LibraryFiles>().remove(pathOf(path));
    EXPECT_FALSE(with_.fake.files.exists(path)) << path;
  }
}

// A script may run the host's event loop and with it the next placing command.
TEST_F(Placement, PlacementInsideAPlacementDisturbsNeither) {
  with_.fake.files.addFile("C:\\Other\\m.json", smallModule);
  bool nested = false;
  host_.during = [&](const std::string&) {
    if (!std::exchange(nested, true)) {
      with_.placement.dsnDatPath = "C:\\Other\\m.json";
      placeLibraryOnly();
    }
  };
  placer_.placeModule(host_);
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_EQ(with_.fake.files.entries("C:\\Other").size(), 2U);  // its module and its new library
}

TEST(ModuleFileTest, ViewBoxIsTheSizeOfTheBoundingBox) {
  for (const auto& row : rowsOf(R"(
      300 200 | 300 200
      10 20 310 220 | 300 200
      0.1 0 10.3 1.5 | 10.2 1.5
      10 10 5 5 | -5 -5
      007 1.50 | 007 1.50
      1e3 2 | 1e3 2
      1e-05 0 1e3 2e1 | 999.99999 20
      +5 .5 | +5 .5
      | none | 1 | 1 2 3 | 1 x | [exit] 2 | nan inf | 1e10 2 | 2 -1e10 | 1e 2 | . - | 1 2000000000 | 1 2})")) {
    for (std::size_t field = 0; field < row.size(); field += field == 0 ? 2 : 1) {  // those behind have none either
      FakeSession with;
      with.fake.files.addFile("C:\\m.json", R"({"BoundingBox":")" + row[field] + "\"}");
      const auto box = ModuleFile::read(with.fake.files, with.logs, pathOf("C:\\m.json")).viewBox();
      EXPECT_EQ(box ? box->width + " " + box->height : "none", row[1]) << row[field];
    }
  }
}

}  // namespace
}  // namespace vernoxa::modules
