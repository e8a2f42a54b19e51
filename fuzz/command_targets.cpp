// What the plug-in runs in the host's interpreter, whatever came in: only the procedures that belong to a message.
#include <algorithm>
#include <array>
#include <span>

#include "loaded_plug_in_tcl.h"
#include "plugin/command_table.h"
#include "target.h"
#include "text/json.h"
#include "wire/packet_text.h"

namespace vernoxa::fuzz {
namespace {

// The procedures that each message may run, between blanks.
struct MessageProcedures {
  std::string_view message;
  std::string_view procedures;
};

constexpr std::string_view placingProcedures =
    "IsSchematicViewActive UnSelectAll setPlaceMarketFlag PlaceNew placeLibPart setPinNum placePart";

constexpr MessageProcedures companionProcedures[] = {
    {"GetActiveProPages", "GetActiveProPages"},
    {"SetPlacePortType", "KX_PlaceWirePort"},
    {"SetPlaceOffpageType", "KX_PlaceWireOffPage"},
    {"AdjustRefAndValue", "ReplaceRefAndValue"},
    {"RenameRef", "RenameRef"},
    {"GetOlbObjectPackageInfo", "GetOlbObjectPackage"},
    {"GetDsnAllPackageInfo", "GetAllPackage"},
    {"GetOlbAllPackageInfo", "GetOlbAllPackage"},
    {"DsnCheck", "RunCheck"},
    {"DsnCheckActiveProj", "RunCheckActiveProj"},
    {"JumpToDsn", "JumpToDsn"},
    {"AutoDealwithDsn", "AutoDeal"},
    {"SelectModule", "getSelectPart"},
    {"ClearCurrentDesign", "ClearCurrentDesign"},
    {"PlaceDsnLibPartModule",
     "MenuCommand IsSchematicViewActive UnSelectAll SetLibViewBox placeLibPart "
     "setPinNum setPlaceMarketFlag PlaceNew"},
    {"PlaceDSNModule", placingProcedures},
    {"GenerateBOM",
     "GetProductVersion generateBOMForPath ::capGenerateBOMUtil::getStickList ::capGenerateBOMUtil::getNotStickList "
     "::capGenerateBOMUtil::getNoPartNumberList"},
    {"JumpToPartRef", "gotoLocation"},
    {"CheckOpenState", "InitPath"},
    {"SwitchStickOrNotStick", "switchStickOrNotStick"},
    {"SetToNotStick", "setRefToNotUse saveFile ZoomIn ZoomOut"},
    {"SetToStick", "setRefToUse saveFile ZoomIn ZoomOut"},
    {"ExitBomViewMode", "LockBomView saveFile ZoomIn ZoomOut"},
    {"EnterBomViewMode", "setAllNotStick setEnterViewMode LockBomView saveFile ZoomIn ZoomOut"},
    {"GetPartPropertyList", "getAllPropertyName"},
    {"SetNewGuid", "getGuid"},
    {"CreateSVG", "convertToSVG"},
    {"CloseOrcad", "Exit"},
};

constexpr MessageProcedures threadProcedures[] = {
    {"GetNetsList", "GetNetsList"}, {"getDsnPinCount", "getDsnPinCount"},
    {"GetNewOpenPath", "InitPath"}, {"FileStatus", "InitPath sendPacketGlobalHandle"},
    {"creatClient", "creatClient"},
};

std::string_view proceduresOf(std::string_view message, std::span<const MessageProcedures> table) {
  const Json parsed = Json::parse(std::string(message)).document;
  const auto command = parsed.view().member("Command").text();
  const auto row = std::find_if(table.begin(), table.end(),
                                [&](const MessageProcedures& each) { return command && *command == each.message; });
  return row == table.end() ? "" : row->procedures;
}

std::string allOf(std::span<const MessageProcedures> table) {
  std::string procedures;
  for (const MessageProcedures& each : table) {
    procedures.append(each.procedures).append(" ");
  }
  return procedures;
}

constexpr std::string_view commandProcedures =
    "getDsnPinCount sendPacketGlobalHandle GetProductVersion placePart placeLibPart setPinNum";

constexpr std::array<const char*, 2> joinedProcedures = {"getGuid\"", "convertToSVG\""};

// A joined word is one that the host does not know: it goes to `unknown` with what follows it.
bool isJoined(const Words& words) {
  return words.size() > 1 && (words[1].starts_with(joinedProcedures[0]) || words[1].starts_with(joinedProcedures[1]));
}

// First line: what the host answers; the rest is the message.
void packet(std::string_view input, const char* door, std::span<const MessageProcedures> table) {
  RecordingHost& host = recordingHost();
  host.answerWith(takeUntil(input, '\n'));
  LoadedPlugIn loaded;
  host.interp.calls.clear();
  const int status = host.call({door, packetTextOf(input)});
  require(status == commandDone, "a door answered with another status");
  require(loaded.fake.locks.held == 0, "the packet lock stayed held");
  require(messageOf(host.result()).valid, "the answer is no packet text");
  std::erase_if(host.interp.calls, isJoined);
  host.requireOnly(proceduresOf(input, table));
}

std::string unescaped(std::string_view argument) {
  std::string text(argument);
  for (char& c : text) {
    c = c == '\x1E' ? '\n' : c == '\x1F' ? '\t' : c;
  }
  return text;
}

// The line's first word is a command's name, or its first byte chooses one.
Words wordsOf(std::string_view line) {
  const std::string_view name = takeUntil(line, '\t');
  Words words;
  for (const CommandRow& row : commandTable()) {
    if (name == row.name) {
      words.push_back(row.name);
    }
  }
  if (words.empty()) {
    const unsigned char choice = name.empty() ? '\0' : static_cast<unsigned char>(name.front());
    words.push_back(commandTable()[choice % commandCount].name);
  }
  while (!line.empty()) {
    words.push_back(unescaped(takeUntil(line, '\t')));
  }
  return words;
}

}  // namespace

void companionPacket(std::string_view input) {
  packet(input, "packetParser", companionProcedures);
}

void threadPacket(std::string_view input) {
  packet(input, "packetParserForPthread", threadProcedures);
}

// First line: what the host answers; then one command a line, its arguments between tabs.
void commands(std::string_view input) {
  RecordingHost& host = recordingHost();
  host.answerWith(takeUntil(input, '\n'));
  LoadedPlugIn loaded;
  host.interp.calls.clear();
  while (!input.empty()) {
    const Words words = wordsOf(takeUntil(input, '\n'));
    const int status = host.call(words);
    require(status >= commandFailed && status <= commandError, "a command answered with another status");
    require(loaded.fake.locks.held == 0, "the packet lock stayed held");
  }
  std::erase_if(host.interp.calls, isJoined);
  static const std::string procedures =
      allOf(companionProcedures) + allOf(threadProcedures) + std::string(commandProcedures);
  host.requireOnly(procedures);
}

// The input is the module file that the companion names and the host's script then has placed.
void moduleFile(std::string_view input) {
  static const Words asked = {"packetParser",
                              packetTextOf(R"({"Command":"PlaceDSNModule","Data":{"sumPins":"1","price":"2",)"
                                           R"("dsnDatPath":"C:\\m.json","dsnBmpPath":"C:\\p.bmp","uploadResId":"7",)"
                                           R"("uploadUserId":"8","selfModule":"0"}})")};
  RecordingHost& host = recordingHost();
  host.answerWith("1");
  LoadedPlugIn loaded;
  loaded.fake.files.addFile("C:\\m.json", input);
  loaded.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "library");
  loaded.fake.files.addFile("C:\\my.olb", "library");
  host.interp.calls.clear();
  require(host.call(asked) == commandDone, "the module's placement failed");
  require(messageOf(host.result()).message.find("_EndResult\",\"Result\":\"0\"") != std::string::npos,
          "a module changed the answer");
  require(host.call({"placeMarketPart"}) == commandDone, "the placement failed");
  host.requireOnly(placingProcedures);
  require(loaded.fake.files.exists("C:\\my.olb"), "a library of the user's is gone");
  require(loaded.fake.files.exists("C:\\App\\config\\Resource\\Empty.olb"), "the base library is gone");
}

}  // namespace vernoxa::fuzz
