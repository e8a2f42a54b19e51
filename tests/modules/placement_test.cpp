#include "modules/placement.h"

#include <algorithm>

#include "modules/library_files.h"
#include "support/session_test.h"
#include "support/table.h"
#include "system/random.h"
#include "text/outside_json.h"

namespace vernoxa::modules {
namespace {

using namespace testing;

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

class Placement : public SessionTest {
 protected:
  Placement() {
    enableTraffic();
    fake.files.addFile(emptyLibrary, "OLB");
    placement.dsnDatPath = modulePath;
    write(smallModule);
  }
  // The module to place, by the next libraries 5 and 6.
  void write(const std::string& module) {
    fake.random.numbers = {5, 6};
    fake.files.addFile(modulePath, module);
    host_.scripts.clear();
  }
  // The scripts of its placement.
  const std::vector<std::string>& place(const std::string& module = smallModule) {
    write(module);
    placer_.placeModule(host_);
    return host_.scripts;
  }
  PlacedLibrary placeLibraryOnly(DraggedBox box = DraggedBox::none) { return placer_.placeLibrary(host_, box); }
  std::vector<std::string> files() { return namesIn("C:\\Mods\\7"); }
  auto timesLogged(const std::string& begin) {
    const std::vector<std::string> lines = splitFields(traffic(), '\n');
    return std::count_if(lines.begin(), lines.end(), [&](const std::string& line) { return line.starts_with(begin); });
  }

  ModulePlacer& placer_ = part<ModulePlacer>();
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
  EXPECT_THAT(traffic(), HasSubstr("placeLibPart " + resistor));
  EXPECT_THAT(files(), ElementsAre("6.olb", "ModuleLib.json"));
  placer_.placeModule(host_);  // by other names: it takes the former library away
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Placement, ObjectsOfAModuleArePlaced) {
  placement.uploadResId = "12";
  placement.uploadUserId = u8"用户"_gbk;
  for (const auto& [designator, word, property, userProperty] :
       {std::array{"0", "0", "", ""}, std::array{"", "{}", "", ""},
        std::array{"1", "1", R"( [list "Cost" "9"])", R"( [list "Own" "o"])"}}) {  // the user's own module
    placement.selfModule = designator;
    EXPECT_EQ(place().back(), std::string("placePart Wire ") + word + R"( [list [list "Color" "3"])" + property +
                                  R"( [list "NimbMarket" "Wire"] [list "MarketResID" "12"] [list "MarketUserID" ")" +
                                  utf8(u8"用户") + R"("] [list "Value" "v"])" + userProperty +
                                  R"(] [list [list "WireStart" "1 2"] [list "NewPoint" "1 2"] [list "NewPoint" "3 4"] )"
                                  R"([list "NewPoint" "5 6"]] [list [list "Name" "n"] [list "Value" "v"]])");
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_TRUE(traffic().ends_with("\nover!!!"));
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
  EXPECT_THAT(
      place(R"({"lib":[{"Name":"R"}],"children":[{"name":"Wire","Property":{)" + written + R"("Own":"3"}}]})").back(),
      StartsWith("placePart Wire 0 [list " + kept + "[list \"NimbMarket\""));
}

TEST_F(Placement, CataloguePartIsPlacedAtItsFixedPlace) {
  placement = {modulePath, "", "", "A", "2", "", "0603", u8"电阻"_gbk, "PN[1]", "U", "10\"k", 1};
  EXPECT_EQ(
      place().back(),
      R"(placePart Part -1 [list [list Location "10 10"] [list Rotation 0] [list Mirror 0] [list Package RES] )"
      R"([list PartIndex 2] [list Designator "A"]] [list [list "PCB Footprint" 0603] [list "Part Number" PN\[1\]] )"
      R"([list "Part Name" )" +
          utf8(u8"电阻") + R"(] [list "Part Reference" U1A] [list "Value" "10\"k"]] [list])");
  EXPECT_EQ(placement.placeState, 0);
  EXPECT_THAT(files(), IsEmpty());

  placement.placeState = 1;
  EXPECT_THAT(place(R"({"lib":[7],"children":[{"name":"Part"}]})").back(),
              HasSubstr("[list Package ]"));  // none of its parts is one
}

TEST_F(Placement, BadModulePlacesNothingAndLeavesNothing) {
  const std::string deep(100000, '[');
  const std::string most = replaceAll(std::string(249'999, ' '), " ", "0,") + "0";
  const std::pair<std::string, const char*> cases[] = {
      {"", "root is null"},
      {std::string(smallModule).substr(0, 400), "root is null"},
      {R"({"lib":)" + deep, "JSON refused: nested deeper than 1000 levels\nroot is null"},
      {R"({"lib":[)" + std::string(longestOutsideJson, ' ') + "]}", "JSON refused: longer than 32 MB\nroot is null"},
      {R"({"lib":[)" + most + ",0]}", "module refused: more than 250000 parts or objects\nroot is null"},
      {R"({"lib":[],"children":[)" + most + ",0]}", "module refused: more than 250000 parts or objects\nroot is null"},
      {"[]", "libItem is null"},
      {R"({"Lib":[]})", "libItem is null"},
      {R"({"lib":{"Name":"R"},"BoundingBox":"1 2"})", "libItem is null"},
  };
  for (const auto& [module, logged] : cases) {
    placement.placeState = 1;
    EXPECT_THAT(place(module), IsEmpty()) << module.substr(0, 40);
    EXPECT_THAT(traffic(), EndsWith(logged)) << module.substr(0, 40);
    EXPECT_THAT(files(), ElementsAre("ModuleLib.json"));
    EXPECT_EQ(placement.placeState, 0);
  }
  write(R"({"lib":[)" + most + R"(],"children":[)" + most + "]}");
  EXPECT_TRUE(placeLibraryOnly().made);
  fake.files.removeFile(modulePath);
  EXPECT_FALSE(placeLibraryOnly().made);
  EXPECT_THAT(traffic(), EndsWith("root is null"));
}

TEST_F(Placement, ALibraryThatCannotBeMadeIsNamedOnceInTheLogAndInNoScript) {
  hostExecutable.set(pathOf("D:\\Cadence\\Capture.exe"));
  std::ptrdiff_t times = 0;
  const auto expectNotMade = [&](const std::string& logged, std::size_t scripts) {
    placer_.placeModule(host_);
    EXPECT_THAT(host_.scripts, SizeIs(scripts)) << logged;
    EXPECT_THAT(traffic(), EndsWith("library not made: " + logged));
    EXPECT_EQ(timesLogged("library not made"), ++times);
    EXPECT_EQ(fake.files.bytes(modulePath), smallModule);  // for another try
    write(smallModule);
  };
  fake.files.removeFile(emptyLibrary);
  expectNotMade(
      "C:/Mods/7/5.olb: no C:\\App\\config\\Resource\\Empty.olb and no D:\\Cadence\\config\\Resource\\Empty.olb", 0);
  fake.files.addFolder(emptyLibrary);  // in its place
  expectNotMade("C:/Mods/7/5.olb: copy of C:\\App\\config\\Resource\\Empty.olb failed, error 2", 0);
  fake.files.addFile(emptyLibrary, "OLB");
  host_.during = [this](const std::string&) { fake.files.removeFile("C:\\Mods\\7\\5.olb"); };
  expectNotMade("C:/Mods/7/6.olb: copy of C:/Mods/7/5.olb failed, error 2", 4);  // those of the library
  fake.files.addFile("C:\\Mods\\7\\5.olb", "the user's");
  fake.files.addFile("C:\\Mods\\7\\6.olb", "the user's");  // which was not made
  fake.random.numbers.assign(10000, 5);                    // the second name would be free
  expectNotMade("C:/Mods/7/*.olb: no free name", 0);
  EXPECT_EQ(fake.files.bytes("C:\\Mods\\7\\5.olb"), "the user's");
  EXPECT_EQ(fake.files.bytes("C:\\Mods\\7\\6.olb"), "the user's");
  host_.during = nullptr;
  fake.random.numbers.assign(9999, 5);
  fake.random.numbers.insert(fake.random.numbers.end(), {7, 8});
  EXPECT_EQ(placeLibraryOnly().newLibrary.utf8(), "C:/Mods/7/8.olb");  // after the most tries that are made
  fake.files.removeFile(emptyLibrary);
  fake.files.addFile("D:\\Cadence\\config\\Resource\\Empty.olb", "second");
  fake.random.numbers = {9, 10};
  EXPECT_TRUE(placeLibraryOnly().made);
  EXPECT_EQ(fake.files.bytes("C:\\Mods\\7\\10.olb"), "second");
  LibraryFiles homeless(FilePath(), hostExecutable, placement, fake.files, fake.random, text, logs);
  EXPECT_TRUE(homeless.makeEmpty(pathOf("C:\\Mods\\7\\11.olb")));
}

// Of another type is as good as missing, and costs no more than itself.
TEST_F(Placement, MembersOfWrongTypesCountAsMissing) {
  const std::string missing = R"( [list ""] [list ""] [list ] [list] [list] [list] [list ""])";
  const std::string market = R"( [list "MarketResID" ""] [list "MarketUserID" ""])";
  const std::string wire = R"(placePart Wire 0 [list [list "NimbMarket" "Wire"])" + market + "] [list] [list]";
  const std::array<std::string, 3> cases[] = {
      {R"({"lib":[null,[],"x",{"Name":7,"PartIndex":[],"Type":null,"Designator":2,"BoundingBox":1}],"children":[{"name":"Wire"}]})",
       "{}" + missing, wire},
      {R"({"lib":[{"Name":"R","Property":["x"],"DispProperty":{"a":{"b":"c"}},"children":{"a":{"Name":"Line"}}}],
           "children":[1,{"name":"Wire","Property":["x"],"UserProperty":[["y"]],"DispProperty":{"a":{"b":"c"}},"Data":["z"]}]})",
       "{R}" + missing, wire},
      {R"({"lib":[{"Name":"R","DispProperty":[["x"],"y",{"n":1,"m":"v"}],"children":[1,["a"],{"Name":5,"name":"Arc",
           "Data":[1,"y"],"Property":{"a":null,"b":true,"c":"d"}}]}],"children":[{"Name":5,"name":["x"],"Data":{"path":7,
           "Color":"3"}}]})",
       R"({R} [list ""] [list ""] [list ] [list] [list [list "Arc" [list] [list [list "c" "d"]]]] [list [list "m" "v"]] [list ""])",
       R"(placePart {} 0 [list [list "NimbMarket" ""])" + market + R"(] [list [list "Color" "3"]] [list])"},
      {R"({"lib":[{"Name":"R"}],"children":{"a":{"name":"Wire"}}})", "{R}" + missing, "setPinNum "},
  };
  for (const auto& [module, libraryPart, lastScript] : cases) {
    EXPECT_EQ(place(module).front(), "placeLibPart C:/Mods/7/5.olb " + libraryPart);
    EXPECT_THAT(host_.scripts.back(), StartsWith(lastScript));
  }
  // Parts without a name are no doubles of each other.
  EXPECT_THAT(place(R"({"lib":[{"Name":7},{"Name":8},{"Type":"T"},{"Name":"R"},{"Name":"R"}]})"), SizeIs(8));
}

// A bracket in a module is two characters of a script.
TEST_F(Placement, AnEndlessScriptIsLeftOut) {
  constexpr std::size_t most = std::size_t{8} << 20U;
  const auto object = [](const std::string& value) { return R"({"name":"E","Property":{"Value":")" + value + "\"}}"; };
  const std::string endless = object(std::string(most / 2, '['));
  const std::size_t shortest = place(R"({"lib":[{"Name":"R"}],"children":[)" + object("") + "]}").back().size();
  const std::string longest = object(std::string(most - shortest, 'x'));
  const std::string tooLong = object(std::string(most - shortest + 1, 'x'));
  EXPECT_THAT(place(R"({"lib":[)" + endless + R"(,{"Name":"R"}],"children":[)" + tooLong + "," + longest +
                    R"(,{"name":"Wire"}]})"),
              ElementsAre(StartsWith("placeLibPart C:/Mods/7/5.olb {R}"), StartsWith("setPinNum C:/Mods/7/5.olb {R}"),
                          StartsWith("placePart E"), StartsWith("placePart Wire")));
  EXPECT_EQ(timesLogged("not placed: a script of more than 8 MB"), 2);
}

TEST(TimeSeededNumbersTest, OneIsAnotherThanTheNext) {
  TimeSeededNumbers numbers;
  const int first = numbers.next();
  EXPECT_GE(first, 0);
  EXPECT_NE(numbers.next(), first);
}

TEST_F(Placement, NamesInUseAreDrawnAgain) {
  for (const char* name : {"1.OLBlck", "2.olb", "3_0.OBK"}) {
    fake.files.addFile(std::string("C:\\Mods\\7\\") + name, "the user's");
  }
  fake.random.numbers = {1, 2, 3, 4, 4, 2, 8};
  EXPECT_EQ(placeLibraryOnly().newLibrary.utf8(), "C:/Mods/7/8.olb");
  EXPECT_THAT(host_.scripts.front(), StartsWith("placeLibPart C:/Mods/7/4.olb "));
  EXPECT_THAT(files(), ElementsAre("1.OLBlck", "2.olb", "3_0.OBK", "8.olb", "ModuleLib.json"));
  EXPECT_EQ(fake.files.bytes("C:\\Mods\\7\\2.olb"), "the user's");
}

// Whatever call of the file system fails or throws, no temporary library stays and no file but the placement's own
// goes.
TEST_F(Placement, EveryFailureOfTheFilesLeavesTheUsersFiles) {
  fake.files.addFile("C:\\Mods\\7\\5.olb", "the user's");
  host_.during = [this](const std::string&) { fake.files.addFile("C:\\Mods\\7\\6_0.OBK", "backup"); };
  for (const auto kind : {Faults::Kind::fail, Faults::Kind::throwBadAlloc}) {
    for (int call = 1; call < 80; ++call) {
      write(smallModule);
      fake.random.numbers = {5, 6, 7};  // 5 is the user's, and looks free when the question fails
      fake.files.faults.failCall(call, kind);
      try {
        placer_.placeModule(host_);
      } catch (const std::bad_alloc&) {
      }
      fake.files.faults.failCall(0);
      EXPECT_EQ(fake.files.bytes("C:\\Mods\\7\\5.olb"), "the user's");
      EXPECT_EQ(fake.files.bytes(emptyLibrary), "OLB");
      for (const char* made : {"C:\\Mods\\7\\6.olb", "C:\\Mods\\7\\7.olb", "C:\\Mods\\7\\6_0.OBK"}) {
        fake.files.removeFile(made);  // one failed removal may leave one file of our own
      }
    }
  }
}

TEST_F(Placement, FilesOfTheUserAreNeverRemoved) {
  const auto stays = [this](const std::string& path) {
    fake.files.addFile(path, "");
    part<LibraryFiles>().remove(pathOf(path));
    EXPECT_EQ(fake.files.exists(path), traffic().ends_with("not removed: " + path)) << path;
    return fake.files.exists(path);
  };
  // The system finds the same files by most of these.
  for (const char* path :
       {"C:\\Mods\\7\\board.DSN", "C:\\Mods\\7\\board.opj", "C:\\Mods\\7\\parts.olb", "C:\\Mods\\7\\a.dsn.",
        "C:\\Mods\\7\\a.Opj ", "C:\\Mods\\7\\a.olb. .", "C:\\Mods\\7\\a:b", "C:\\Mods\\7\\b.dsn\\.",
        "C:/Mods/7/b.opj/x/..", "C:\\Mods\\7\\b.olb\\.\\.", "C:\\Mods\\7\\c.dsn\\", "\\\\?\\C:\\Mods\\7\\d.dsn",
        "\\\\.\\C:\\Mods\\7\\d.opj", "//?/C:/Mods/7/plain:stream", "//?/C::x", "D:ata:x", "D::x"}) {
    EXPECT_TRUE(stays(path)) << path;
  }
  // The drive of a path as the system itself writes it begins no other name.
  EXPECT_FALSE(stays("\\\\?\\C:\\Mods\\own.json") || stays("\\\\.\\C:\\Mods\\own.json"));
  EXPECT_FALSE(stays("C:\\Mods\\own.dsnx"));
  for (const int failing : {2, 3}) {  // the system does not say which file it is; another program holds it
    fake.files.faults.failCall(failing);
    EXPECT_TRUE(stays("C:\\Mods\\held.json")) << failing;
  }
}

// A script may run the host's event loop and with it the next placing command; the host may make a backup late.
TEST_F(Placement, PlacementInsideAPlacementDisturbsNeither) {
  fake.random.numbers = {5, 6, 7, 8};
  fake.files.addFile("C:\\Other\\m.json", smallModule);
  bool nested = false;
  host_.during = [&](const std::string&) {
    if (!std::exchange(nested, true)) {
      placement.dsnDatPath = "C:\\Other\\m.json";
      placeLibraryOnly();
      fake.files.addFile("C:\\Mods\\7\\5_0.OBK", "");
      fake.files.addFile("C:\\Other\\7_0.OBK", "");
    }
  };
  placer_.placeModule(host_);
  EXPECT_THAT(files(), IsEmpty());
  part<LibraryFiles>().remove(part<LibraryFiles>().backupPath());
  EXPECT_EQ(fake.files.entries("C:\\Other").size(), 2U);  // its module and its new library
}

// The file is removed only at the end of the placement, and what runs inside it must not take its library away.
TEST_F(Placement, ModuleIsNotPlacedInsideItsOwnPlacement) {
  fake.random.numbers = {5, 6, 7, 8};
  host_.during = [&](const std::string&) { placer_.placeModule(host_); };
  placer_.placeModule(host_);
  EXPECT_THAT(host_.scripts, SizeIs(5));
  EXPECT_THAT(host_.scripts.back(), StartsWith("placePart Wire"));
  EXPECT_EQ(timesLogged("root is null"), 5);
  EXPECT_THAT(files(), IsEmpty());
  host_.during = nullptr;
  EXPECT_THAT(place(), SizeIs(5));  // the next file of that name is
}

// The second then takes the place of the first.
TEST_F(Placement, PlacementInsideAPlacementMayDrawItsName) {
  fake.random.numbers = {5, 6, 7, 6};
  bool nested = false;
  host_.during = [&](const std::string&) {
    if (!std::exchange(nested, true)) {
      placeLibraryOnly();
    }
  };
  placer_.placeModule(host_);
  EXPECT_THAT(host_.scripts.back(), StartsWith("placePart Wire"));
  EXPECT_THAT(files(), IsEmpty());
}

// The next file of a name may be the user's, and a note kept for each placement would grow all day.
TEST_F(Placement, BackupsAreRemovedUntilTheNextNamesArePicked) {
  LibraryFiles& libraries = part<LibraryFiles>();
  const FilePath backup = pathOf("C:/Mods/7/5_0.OBK");
  const auto stays = [&] {
    fake.files.addFile(backup.utf8(), "");
    libraries.remove(backup);
    return fake.files.exists(backup.utf8());
  };
  place();
  place();
  EXPECT_FALSE(stays());
  place();
  write(smallModule);
  fake.random.numbers = {1, 2};
  placer_.placeModule(host_);
  EXPECT_TRUE(stays());
  fake.files.removeFile(backup.utf8());
  fake.files.removeFile(emptyLibrary);
  place();  // without a library the host makes no backup
  EXPECT_TRUE(stays());
}

TEST_F(Placement, ViewBoxIsTheSizeOfTheBoundingBox) {
  for (const auto& row : rowsOf(R"(
      300 200 | 300 200
      10 20 310 220 | 300 200
      0.1 0 10.3 1.5 | 10.2 1.5
      10 10 5 5 | -5 -5
      007 1.50 | 007 1.50
      1e3 2 | 1e3 2
      1000000000 -1000000000 | 1000000000 -1000000000
      1e-05 0 1e3 2e1 | 999.99999 20
      +5 .5 | +5 .5
      | none | 1 | 1 2 3 | 1 x | [exit] 2 | nan inf | 1e10 2 | 2 -1e10 | 1e 2 | . - | 1 2000000000
      2 -1000000000.1 | none | 1000000000.1 2 | 1 2})")) {
    for (std::size_t field = 0; field < row.size(); field += field == 0 ? 2 : 1) {  // those behind have none either
      write(R"({"BoundingBox":")" + row[field] + "\"}");
      const auto box = ModuleFile::read(fake.files, logs, pathOf(modulePath)).viewBox();
      EXPECT_EQ(box ? box->width + " " + box->height : "none", row[1]) << row[field];
    }
  }
}

}  // namespace
}  // namespace vernoxa::modules
