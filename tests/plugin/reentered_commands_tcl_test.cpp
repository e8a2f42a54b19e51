// Every command and every handler, while the host's event loop runs inside its boxes, its dialog and its evaluations
// and does the worst that a script can: it reads the command's lists as something else, rewrites and unsets the
// variables that hold them, puts other texts into the memory that this gives back, and brings the next packet.
#include <gmock/gmock.h>
#include <tcl.h>

#include <map>

#include "plugin/command_table.h"
#include "plugin/request_table.h"
#include "support/loaded_plug_in_tcl.h"
#include "support/soak.h"
#include "support/table.h"
#include "text/gbk_literal.h"
#include "text/text.h"
#include "wire/packet_text.h"

namespace vernoxa::plugin {
namespace {

// Done to the lists and the memory of the call that runs the event loop.
constexpr const char* spoil = R"(
  foreach name [info globals argument*] {
    upvar #0 $name value
    foreach element $value {
      foreach inner $element {string length $inner}
      string length $element
    }
    string length $value
    append value { more}
    set value {}
    unset value
  }
  set noise {}
  for {set size 0} {$size < 300} {incr size} {
    lappend noise [list [string repeat ! $size] [expr {$size * 3}]]
  }
)";

const std::string worst = std::string(spoil) + R"(
  packetParser $nested
  sendRemoveFromBom {short 1;2;3;4;5;6 short}
  SelectJumpPart {U2;U1} 1
)";

// By the procedure's name; all others answer "1".
const std::map<std::string, std::string> hostAnswers = {
    {"InitPath", "a.dsn;C:\\b.dsn;C:\\\xC9\xE8.dsn"},
    {"GetProductVersion", "17.4"},
    {"GetActiveProPages", "{C:/a.dsn P1 {Page 2}} {C:/b.dsn P2}"},
    {"getAllPropertyName", "Value {Part Number}"},
    {"creatClient", "0"},
    {"::capGenerateBOMUtil::getStickList", "1;10k;R1;RES;0603;2 2;a;R2;RES;0603;2 short"},
};

constexpr const char* module =
    R"({"children":[{"name":"Wire","Data":{"path":"1,2"}},{"name":"Part"}],"lib":[{"Name":"RES"},{"Name":"CAP"}],)"
    R"("BoundingBox":"30 20"})";

// One load of the plug-in, and what a call of it shows to the outside.
class Stage : public LoadedPlugIn {
 public:
  // With these scripts behind it.
  explicit Stage(std::initializer_list<const char*> before) {
    fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
    fake.files.addFile("C:\\Mods\\m.json", module);
    fake.files.addFolder("C:\\App\\Cache\\Output");
    fake.messages.during = [this](std::string_view text) { happened("box " + std::string(text)); };
    fake.desktop.user = [this](const std::vector<std::string>& texts) {
      happened("dialog");
      return texts.empty() ? std::nullopt : std::optional(texts.size() - 1);
    };
    interp.define("unknown", [this](const Words& words) {
      happened(testing::PrintToString(words));
      const auto answer = hostAnswers.find(words.size() > 1 ? words[1] : "");
      return Evaluation{true, answer != hostAnswers.end() ? answer->second : "1"};
    });
    interp.evaluate("set nested " + packetTextOf(R"({"Command":"CheckOpenState","Data":{"ProjectPath":"C:\\b.dsn"}})"));
    startUp(interp.get(), plugIn);
    part<modules::PlacementContext>().dsnDatPath = "C:\\Mods\\m.json";
    for (const char* const script : before) {
      interp.evaluate(script);
    }
    seen.clear();
  }

  // From now on the event loops run that script: each of them, or the one of that number alone.
  void disturb(const std::string& script, std::size_t onlyAt = everyOne) {
    disturbance_ = script;
    onlyAt_ = onlyAt;
  }
  // `arguments` as a script writes them, each held by a variable.
  std::string call(const std::string& command, const std::vector<std::string>& arguments) {
    std::string script = command;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
      const std::string name = "argument" + std::to_string(index);
      interp.evaluate("set " + name + " {" + arguments[index] + "}");
      script += " $" + name;
    }
    const auto result = interp.evaluate(script);
    EXPECT_EQ(fake.locks.held, 0) << command;
    return std::to_string(result.status) + " " + result.text;
  }

  TclInterp interp;
  std::vector<std::string> seen;  // boxes, dialogs and evaluations, but those of the disturbance
  std::string disturbed;          // what the last disturbance answered

 private:
  void happened(const std::string& what) {
    if (disturbing_) {
      return;
    }
    seen.push_back(what);
    if (!disturbance_.empty() && (onlyAt_ == everyOne || onlyAt_ == seen.size() - 1)) {
      disturbing_ = true;
      const auto result = interp.evaluate(disturbance_);
      EXPECT_EQ(result.status, 0) << interp.evaluate("set errorInfo").text;
      disturbed = result.text;
      disturbing_ = false;
    }
  }

  static constexpr std::size_t everyOne = ~std::size_t{0};
  std::string disturbance_;
  std::size_t onlyAt_ = everyOne;
  bool disturbing_ = false;
};

struct Sample {
  std::vector<std::string> arguments;
  const char* before = "";  // a script
};

// A Tcl text in UTF-8; its characters need the code page.
const std::string chinese = "\xE7\x94\xB5\xE9\x98\xBB";
const std::string parts = "short 1;" + chinese + ";R1;RES;0603;2 {} {2;a b;R2;RES;0603;2} x;c;R3;RES;0603;2";
const std::string properties = "{Value 10k} {Name n} {{Part Number} {a \\ b}} {Own " + chinese + "}";
constexpr const char* openPage = "initSVGList; addToPageList {Page P 1 2 K}; addToLibList {Name S}";
constexpr const char* openModule = "initMarketFile; addMarketLibList {Name RES Part 0 0 1 1 1 A}";

// What the commands that take arguments are called with.
const std::map<std::string, Sample> samples = {
    {"packetParser", {{packetTextOf(R"({"Command":"RenameRef","Data":{"Type":2}})")}}},
    {"packetParserForPthread", {{packetTextOf(R"({"Command":"GetNewOpenPath"})")}}},
    {"SelectJumpPart", {{"U3;" + chinese + ";U2", "1"}}},
    {"ReadOpenPath", {{"C:/" + chinese + ".dsn"}}},
    {"sendCloseFile", {{"C:/" + chinese + ".dsn"}}},
    {"sendAddToBom", {{parts}}},
    {"sendRemoveFromBom", {{parts}}},
    {"sendSaveFile", {{"C:/" + chinese + ".dsn"}}},
    {"addToPageList", {{"Text 1 2 {a " + chinese + "} 3 9 0 0"}, openPage}},
    {"addToLibList", {{"Text 1 2 {a " + chinese + "} 3 9 0 0"}, openPage}},
    {"outputSVGFile", {{"\xB5\xE7 P x y K"}, openPage}},  // in the code page
    {"outputError", {{chinese}}},
    {"addMarketPartList", {{"Part 1 2 0 0 " + chinese}, openModule}},
    {"addMarketLibList", {{"Pin 1 2 3 4 5 " + chinese + " 7"}, openModule}},
    {"outputMarketFile", {{"0", "300", "200", chinese}, openModule}},
    {"sendUploadMarket", {{"1", "2", "3", "id," + chinese + ";id2,R2,P", "w;" + chinese, "k"}}},
    {"GetResPath", {{"7"}}},
    {"sendRefRepetition", {{"RefRepe", chinese, "R2", "S", "P\\1", "1", "2"}}},
    {"sendIllegalChar", {{"Value", chinese, "S", "P", "1", "2"}}},
    {"sendPinNC", {{"R1", "2", chinese, "P", "1", "2"}}},
    {"sendNetlist", {{"ValueDiff", "R1", chinese, "S", "P", "1", "2"}}},
    {"checkCharIllegal", {{chinese}}},
    {"addGraphicLibList", {{"Name " + chinese}, "initGraphicFile"}},
    {"outputGraphicFile", {{chinese}, "initGraphicFile; addGraphicLibList {Name S}"}},
    {"sendOlbPackageInfo", {{properties}}},
    {"sendDsnPackageInfo", {{properties}}},
    {"sendOlbObjectPackageInfo", {{properties}}},
    {"writeToClipboard", {{chinese}}},
};

// A call of the plug-in: a command, or a request through its door.
struct Entry {
  std::string name;
  std::string command;
  Sample sample;
};

// What the outside sees of one call.
struct Shown {
  std::vector<std::string> all;  // the result, what was seen, and the files
  std::size_t events = 0;
  int locks = 0;
};

Shown show(const Entry& entry, bool conversionsFail, bool disturbed) {
  Stage stage({entry.sample.before});
  stage.disturb(disturbed ? worst : "");
  stage.fake.codePage.throwing = conversionsFail;  // they show a box then
  Shown shown{{stage.call(entry.command, entry.sample.arguments)}, stage.seen.size(), stage.fake.locks.mostHeld};
  stage.fake.codePage.throwing = false;
  shown.all.insert(shown.all.end(), stage.seen.begin(), stage.seen.end());
  stage.interp.evaluate("outputSVGFile {S P x y K}; outputGraphicFile g; outputMarketFile 0 1 2 3");
  for (const std::string& path : stage.fake.files.paths()) {
    shown.all.push_back(path + ": " + stage.fake.files.bytes(path));
  }
  return shown;
}

Json valueFor(const Member& member) {
  if (member.kind == MemberKind::array) {
    return Json::parse(u8R"([{"PartRef":"R1"},"R2",{"PartRef":"电阻"}])"_gbk).document;
  }
  const std::string_view name = member.name;
  return Json::string(member.kind == MemberKind::number ? "3"
                      : name == "dsnDatPath"            ? "C:\\Mods\\m.json"
                      : name == "Status"                ? "Open"
                                                        : u8"C:\\设计\\a.dsn"_gbk);
}

std::vector<Entry> everyCall() {
  std::vector<Entry> all;
  for (const auto& [door, table] :
       {std::pair{"packetParser", companionHandlers()}, std::pair{"packetParserForPthread", threadHandlers()}}) {
    for (const HandlerRow& row : table) {
      Json message = Json::object();
      message.add("Command", row.name);
      const JsonView data = message.add("Data", Json::object());
      for (const Member& member : row.members) {
        message.addTo(data, member.name, valueFor(member));
      }
      all.push_back({row.name, door, {{packetTextOf(message.printUnformatted())}}});
    }
  }
  for (const CommandRow& row : commandTable()) {
    const auto sample = samples.find(row.name);
    EXPECT_TRUE(sample != samples.end() || row.arguments.each.count == 0) << "what is " << row.name << " called with?";
    all.push_back({row.name, row.name, sample != samples.end() ? sample->second : Sample()});
  }
  return all;
}

TEST(ReenteredCommands, NoCallLooksAtWhatAScriptTookAway) {
  std::vector<Entry> all = everyCall();
  for (const char* const door : {"packetParser", "packetParserForPthread"}) {
    all.push_back({"a box for what is no packet text", door, {{"zz"}}});
  }
  std::vector<std::string> quiet;
  for (const Entry& entry : all) {
    std::size_t disturbances = 0;
    for (const bool conversionsFail : {false, true}) {
      SCOPED_TRACE(entry.name + (conversionsFail ? ", conversions fail" : ""));
      const Shown disturbed = show(entry, conversionsFail, true);
      EXPECT_EQ(disturbed.all, show(entry, conversionsFail, false).all);
      disturbances += disturbed.events;
      if (entry.name != entry.command && !conversionsFail) {
        EXPECT_EQ(disturbed.locks, entry.name == "Cancel" ? 1 : 2);
      }
    }
    if (disturbances == 0) {
      quiet.push_back(entry.name);
    }
  }
  EXPECT_THAT(quiet, testing::SizeIs(26));  // commands that neither show a box nor evaluate
}

enum class Order { nested, outerFirst, innerFirst };

// What two calls answered; nested, the inner one runs inside that event loop of the outer one.
std::string answersOf(const Entry& outer, const Entry& inner, Order order, std::size_t event = 0) {
  std::string innerScript = "list [catch {" + inner.command;
  for (const std::string& argument : inner.sample.arguments) {
    innerScript += " {" + argument + "}";
  }
  innerScript += "} text] $text";
  Stage stage({outer.sample.before, inner.sample.before});
  std::string answer = order == Order::innerFirst ? stage.interp.evaluate(innerScript).text : "";
  stage.disturb(order == Order::nested ? spoil + innerScript : "", event);
  const std::string outerAnswer = stage.call(outer.command, outer.sample.arguments);
  if (order != Order::innerFirst) {
    answer = order == Order::nested ? stage.disturbed : stage.interp.evaluate(innerScript).text;
  }
  return outerAnswer + "\n" + answer;
}

// Every event loop of every command and request runs another call, and every call is run so. Which with which changes
// from event to event; all of them with all take minutes, with VERNOXA_TRUST=all.
TEST(ReenteredCommands, TwoCallsAnswerAsIfOneCameAfterTheOther) {
  const std::vector<Entry> all = everyCall();
  const std::size_t inners = tryEverything() ? all.size() : 3;
  std::size_t next = 0;
  int pairs = 0;
  for (const Entry& outer : all) {
    Stage quiet({outer.sample.before});
    quiet.call(outer.command, outer.sample.arguments);
    for (std::size_t event = 0; event < quiet.seen.size(); ++event) {
      for (std::size_t count = 0; count < inners; ++count, ++pairs) {
        const Entry& inner = all[next++ % all.size()];
        SCOPED_TRACE(inner.name + " inside event " + std::to_string(event) + " of " + outer.name + ": " +
                     quiet.seen[event]);
        const std::string answers = answersOf(outer, inner, Order::nested, event);
        EXPECT_TRUE(answers == answersOf(outer, inner, Order::outerFirst) ||
                    answers == answersOf(outer, inner, Order::innerFirst))
            << answers;
      }
    }
  }
  EXPECT_GE(pairs, 300);
  RecordProperty("pairs", pairs);
}

// In a box that an export shows the host ends it, or begins another one: nothing of that gets into the old file.
TEST(ReenteredCommands, AnExportMayEndOrBeRenewedInsideItsOwnBox) {
  // What shows a box, what runs in it, what comes after, and the files with their last "id". % is a character of the
  // code page.
  for (const auto& row : rowsOf(R"(
    addToPageList {Page Q 3 4 L} | outputSVGFile {S P x y K} | outputSVGFile {S Q x y L} | S@!@P@!@K P S@!@Q@!@L Q
    addToPageList {Page Q 3 4 L} | initSVGList; addToPageList {Page X 1 2 M} | outputSVGFile {S N x y M} | S@!@N@!@M Q
    outputSVGFile {% P x y K} | initSVGList; addToPageList {Page X 1 2 M} | outputSVGFile {S N x y M} | S@!@N@!@M X
    outputGraphicFile % | initGraphicFile; addGraphicLibList {Name T} | outputGraphicFile g | g T
    )")) {
    SCOPED_TRACE(row[0] + " with " + row[1]);
    Stage stage({"initSVGList; addToPageList {Schematic \xB5\xE7}; addToPageList {Page P 1 2 K}",
                 "initGraphicFile; addGraphicLibList {Name S}"});
    stage.disturb(row[1]);
    stage.fake.codePage.throwing = true;
    EXPECT_EQ(stage.interp.evaluate(replaceAll(row[0], "%", "\xB5\xE7")).status, TCL_OK);
    stage.fake.codePage.throwing = false;
    EXPECT_THAT(stage.seen, testing::Contains(u8"box GBK格式异常"_gbk));
    EXPECT_EQ(stage.interp.evaluate(row[2]).status, TCL_OK);
    std::string made;
    for (const std::string folder : {"C:\\App\\Cache\\Output", "C:\\App\\Cache\\Library"}) {
      for (const FolderEntry& file : stage.fake.files.entries(folder)) {
        const std::string bytes = stage.fake.files.bytes(folder + "\\" + file.name);
        made += (made.empty() ? "" : " ") + file.name.substr(0, file.name.find('.')) + " " +
                splitFields(bytes.substr(bytes.rfind("\"id\":\t\"")), '"').at(3);
      }
    }
    EXPECT_EQ(made, row[3]);
  }
}

}  // namespace
}  // namespace vernoxa::plugin
