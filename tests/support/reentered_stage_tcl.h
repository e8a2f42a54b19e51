// A load of the plug-in in whose event loops scripts run, and every call that can be made of it: the commands, and the
// requests through both doors.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "plugin/command_table.h"
#include "plugin/request_table.h"
#include "support/loaded_plug_in_tcl.h"
#include "text/gbk_literal.h"
#include "text/text.h"
#include "wire/packet_text.h"

namespace vernoxa::plugin {

// By the procedure's name; all others answer "1".
inline const std::map<std::string, std::string> hostAnswers = {
    {"InitPath", "a.dsn;C:\\b.dsn;C:\\\xC9\xE8.dsn"},
    {"GetProductVersion", "17.4"},
    {"GetActiveProPages", "{C:/a.dsn P1 {Page 2}} {C:/b.dsn P2}"},
    {"getAllPropertyName", "Value {Part Number}"},
    {"creatClient", "0"},
    {"::capGenerateBOMUtil::getStickList", "1;10k;R1;RES;0603;2 2;a;R2;RES;0603;2 short"},
};

constexpr const char* sharedModule =
    R"({"children":[{"name":"Wire","Data":{"path":"1,2"}},{"name":"Part"}],"lib":[{"Name":"RES"},{"Name":"CAP"}],)"
    R"("BoundingBox":"30 20"})";

// Differs in all that a placement shows.
inline const std::string otherModule =
    replaceAll(replaceAll(replaceAll(sharedModule, "Part", "Port"), "RES", "IND"), "30 20", "50 40");

inline std::string joined(const Words& words) {
  std::string all;
  for (const std::string& word : words) {
    all.append(all.empty() ? "" : " | ").append(word);
  }
  return all;
}

// One load of the plug-in, and what a call of it shows to the outside.
class Stage : public LoadedPlugIn {
 public:
  // With these scripts behind it.
  explicit Stage(std::initializer_list<const char*> before) {
    fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
    fake.files.addFile("C:\\Mods\\m.json", sharedModule);
    fake.files.addFile("C:\\Mods\\n.json", otherModule);
    fake.files.addFolder("C:\\App\\Cache\\Output");
    fake.messages.during = [this](std::string_view text) { happened("box " + std::string(text)); };
    fake.desktop.user = [this](const std::vector<std::string>& texts) {
      happened("dialog " + joined(texts));
      return texts.empty() ? std::nullopt : std::optional(texts.size() - 1);
    };
    interp.define("unknown", [this](const Words& words) {
      if (happened(joined(words))) {
        return Evaluation{false, "no such procedure"};
      }
      const auto answer = hostAnswers.find(words.size() > 1 ? words[1] : "");
      return Evaluation{true, answer != hostAnswers.end() ? answer->second : "1"};
    });
    interp.evaluate("set nested " + packetTextOf(R"({"Command":"CheckOpenState","Data":{"ProjectPath":"C:\\b.dsn"}})"));
    interp.evaluate("set newOpenPath " + packetTextOf(R"({"Command":"GetNewOpenPath"})"));
    startUp(interp.get(), plugIn);
    part<modules::PlacementContext>().dsnDatPath = "C:\\Mods\\m.json";
    for (const char* const script : before) {
      interp.evaluate(script);
    }
    seen.clear();
    asked.clear();
  }

  // From now on the event loops run that script: each of them, or the one of that number alone.
  void disturb(const std::string& script, std::size_t onlyAt = everyOne) {
    disturbance_ = script;
    onlyAt_ = onlyAt;
  }
  // The evaluation of that number ends in an error.
  void fail(std::size_t event) { failsAt_ = event; }
  // A script that is not the host's own call: what it brings about is only `asked`.
  std::string aside(const std::string& script) {
    aside_ = true;
    const auto result = interp.evaluate(script);
    EXPECT_EQ(result.status, 0) << interp.evaluate("set errorInfo").text;
    aside_ = false;
    return result.text;
  }
  // Every file and folder with its bytes; logs with their lines sorted.
  std::vector<std::string> files() const {
    std::vector<std::string> all;
    for (const std::string& path : fake.files.paths()) {
      std::string bytes = fake.files.bytes(path);
      if (path.ends_with(".txt")) {
        Words lines = splitFields(logMessages(bytes), '\n');
        std::sort(lines.begin(), lines.end());
        bytes = joined(lines);
      }
      all.push_back(path + ": " + bytes);
    }
    return all;
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
  std::vector<std::string> seen;   // boxes, dialogs and evaluations, but those of the scripts aside
  std::vector<std::string> asked;  // those too
  std::string disturbed;           // what the last disturbance answered

 private:
  // Whether that is to end in an error.
  bool happened(const std::string& what) {
    asked.push_back(what);
    if (aside_) {
      return false;
    }
    const std::size_t event = seen.size();
    seen.push_back(what);
    if (!disturbance_.empty() && (onlyAt_ == everyOne || onlyAt_ == event)) {
      disturbed = aside(disturbance_);
    }
    return failsAt_ == event;
  }

  static constexpr std::size_t everyOne = ~std::size_t{0};
  static constexpr std::size_t none = ~std::size_t{0};
  std::string disturbance_;
  std::size_t onlyAt_ = everyOne;
  std::size_t failsAt_ = none;
  bool aside_ = false;
};

struct Sample {
  std::vector<std::string> arguments;
  const char* before = "";  // a script
};

// A Tcl text in UTF-8; its characters need the code page.
inline const std::string chinese = "\xE7\x94\xB5\xE9\x98\xBB";
inline const std::string parts = "short 1;" + chinese + ";R1;RES;0603;2 {} {2;a b;R2;RES;0603;2} x;c;R3;RES;0603;2";
inline const std::string properties = "{Value 10k} {Name n} {{Part Number} {a \\ b}} {Own " + chinese + "}";
constexpr const char* openPage = "initSVGList; addToPageList {Page P 1 2 K}; addToLibList {Name S}";
constexpr const char* openModule = "initMarketFile; addMarketLibList {Name RES Part 0 0 1 1 1 A}";

// What the commands that take arguments are called with.
inline const std::map<std::string, Sample> samples = {
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

// What calls are made with; two that run at one time are told apart by it.
enum class Values { usual, others };

inline Json valueFor(const Member& member, Values values) {
  const bool usual = values == Values::usual;
  if (member.kind == MemberKind::array) {
    return Json::parse(usual ? u8R"([{"PartRef":"R1"},"R2",{"PartRef":"电阻"}])"_gbk : R"([{"PartRef":"C1"},"C2"])")
        .document;
  }
  const std::string_view name = member.name;
  return Json::string(member.kind == MemberKind::number ? (usual ? "3" : "4")
                      : name == "dsnDatPath"            ? (usual ? "C:\\Mods\\m.json" : "C:\\Mods\\n.json")
                      : name == "Status"                ? "Open"
                      : usual                           ? u8"C:\\设计\\a.dsn"_gbk
                                                        : "C:\\b.dsn");
}

inline std::vector<Entry> everyCall(Values values = Values::usual) {
  std::vector<Entry> all;
  for (const auto& [door, table] :
       {std::pair{"packetParser", companionHandlers()}, std::pair{"packetParserForPthread", threadHandlers()}}) {
    for (const HandlerRow& row : table) {
      Json message = Json::object();
      message.add("Command", row.name);
      const JsonView data = message.add("Data", Json::object());
      for (const Member& member : row.members) {
        message.addTo(data, member.name, valueFor(member, values));
      }
      all.push_back({row.name, door, {{packetTextOf(message.printUnformatted())}}});
    }
  }
  for (const CommandRow& row : commandTable()) {
    const auto sample = samples.find(row.name);
    EXPECT_TRUE(sample != samples.end() || row.arguments.each.count == 0) << "what is " << row.name << " called with?";
    all.push_back({row.name, row.name, sample != samples.end() ? sample->second : Sample()});
    for (std::string& argument : all.back().sample.arguments) {
      argument = values == Values::usual ? argument : replaceAll(argument, chinese, "\xE7\x94\xB5");
    }
  }
  return all;
}

}  // namespace vernoxa::plugin
