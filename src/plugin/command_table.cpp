#include "plugin/command_table.h"

#include <string_view>

#include "bom/bom_commands.h"
#include "checks/report_commands.h"
#include "designs/file_status_commands.h"
#include "desktop/desktop_commands.h"
#include "dispatch/packet_door.h"
#include "drawing/export_commands.h"
#include "modules/module_commands.h"
#include "modules/placement_commands.h"
#include "modules/request_commands.h"
#include "plugin/small_commands.h"

namespace vernoxa {
namespace {

// Adapts a command to the table: its parameters after the call say which parts of the session it works on.
template <auto command>
struct Run;

template <class... Parts, CommandResult (*command)(CommandCall&, Parts&...)>
struct Run<command> {
  static CommandResult call(CommandCall& call, Session& session) { return command(call, session.part<Parts>()...); }
};

template <auto command>
constexpr CommandFunction run = &Run<command>::call;

constexpr const char* linkFile = "designs/file_status_commands.cpp";
constexpr const char* bomFile = "bom/bom_commands.cpp";
constexpr const char* exportFile = "drawing/export_commands.cpp";
constexpr const char* reportFile = "checks/report_commands.cpp";
constexpr const char* moduleFile = "modules/module_commands.cpp";
constexpr const char* placementFile = "modules/placement_commands.cpp";
constexpr const char* requestFile = "modules/request_commands.cpp";
constexpr const char* doorFile = "dispatch/packet_door.cpp";
constexpr const char* desktopFile = "desktop/desktop_commands.cpp";
constexpr const char* smallFile = "plugin/small_commands.cpp";

// clang-format off
constexpr std::array<CommandRow, commandCount> table = {{
  {"packetParser",           run<packetParser>,           "packetText", "Carries out one packet of the companion and answers the packet text of the reply.", doorFile, "", nullptr},
  {"packetParserForPthread", run<packetParserForPthread>, "packetText", "The same for a packet of the link thread.", doorFile, "", nullptr},
  {"SelectJumpPart",         run<selectJumpPart>, "candidates number", "Lets the user pick one of several parts.", desktopFile, "", nullptr},
  {"ReadOpenPath",           run<readOpenPath>,           "path", "Answers the packet text that reports an opened design.", linkFile, "1", nullptr},
  {"sendCloseFile",          run<sendCloseFile>,          "path", "Answers the packet text that reports a closed design.", linkFile, "1", nullptr},
  {"serverLinkBreak",        run<serverLinkBreak>,        "", "Notes that the host's connection to the companion broke.", linkFile, "", nullptr},
  {"tryUpdateBom",           run<tryUpdateBom>, "", "Asks the companion to refresh its bill of materials.", bomFile, "", nullptr},
  {"sendAddToBom",           run<sendAddToBom>, "parts", "Answers the packet text that reports parts as fitted.", bomFile, "", nullptr},
  {"sendRemoveFromBom",      run<sendRemoveFromBom>, "parts", "Answers the packet text that reports parts as not fitted.", bomFile, "", nullptr},
  {"getOpenFileCount",       run<getOpenFileCount>,       "", "Answers the number of open designs.", linkFile, "0", nullptr},
  {"getGenerateGuid",        run<getGenerateGuid>,        "", "Answers a new GUID.", smallFile, "", nullptr},
  {"outputWarming",          run<outputWarming>,          "", "Tells the user to select a part first.", smallFile, "", nullptr},
  {"selectAddOrRemoveFromBom", run<selectAddOrRemoveFromBom>, "", "Tells the host's script to go on.", bomFile, "1", nullptr},
  {"sendSaveFile",           run<sendSaveFile>,           "path", "Answers the packet text that reports a saved design.", linkFile, "1", nullptr},
  {"addToPageList",          run<addToPageList>, "record", "Adds one object of a page to the drawing.", exportFile, "", nullptr},
  {"addToLibList",           run<addToLibList>, "record", "Adds one record of a library symbol to the drawing.", exportFile, "", nullptr},
  {"initSVGList",            run<initSVGList>, "", "Starts a drawing export.", exportFile, "", nullptr},
  {"outputSVGFile",          run<outputSVGFile>, "names", "Writes the last page of a drawing export.", exportFile, "", nullptr},
  {"GetClipBoardPic",        run<getClipBoardPic>, "", "Saves the clipboard's picture as the preview and answers its path.", desktopFile, "", nullptr},
  {"GetMousePosition",       run<getMousePosition>, "", "Answers the cursor's position.", desktopFile, "", nullptr},
  {"outputError",            run<outputError>,            "?code?", "Shows the message of an error code.", smallFile, "", nullptr},
  {"initMarketFile",         run<initMarketFile>, "", "Starts the export of a shared module.", moduleFile, "", nullptr},
  {"addMarketPartList",      run<addMarketPartList>, "record", "Adds one schematic object to the module.", moduleFile, "", nullptr},
  {"addMarketLibList",       run<addMarketLibList>, "record", "Adds one record of a library part to the module.", moduleFile, "", nullptr},
  {"outputMarketFile",       run<outputMarketFile>, "name width height unused", "Writes the module and answers its path.", moduleFile, "", nullptr},
  {"getOlbPath",             run<getOlbPath>, "", "Answers the temporary library's path.", placementFile, "", nullptr},
  {"sendUploadMarket",       run<sendUploadMarket>, "sumPins selfPins copyPrice parts wires ?keys?", "Hands a module over to the companion.", requestFile, "", "sendUploadMarket exception"},
  {"placeMarketPart",        run<placeMarketPart>, "", "Places the module that the companion named.", placementFile, "", nullptr},
  {"afterPlace",             run<afterPlace>, "", "Ends the host's placement mode.", desktopFile, "", nullptr},
  {"getNewOlbPath",          run<getNewOlbPath>, "", "Answers the new library's path.", placementFile, "", nullptr},
  {"GetResPath",             run<getResPath>, "resourceId", "Answers where the companion keeps a module.", requestFile, "", nullptr},
  {"pressEnter",             run<pressEnter>, "", "Presses Enter after a moment.", desktopFile, "", nullptr},
  {"getSelfUserId",          run<getSelfUserId>, "", "Answers the signed-in user's id.", requestFile, "", nullptr},
  {"removeDatFile",          run<removeDatFile>, "", "Removes the files of a placement.", requestFile, "", nullptr},
  {"sendRefRepetition",      run<sendRefRepetition>, "?kind reference second schematic page x y?", "Design check: reference designators.", reportFile, "", nullptr},
  {"sendIllegalChar",        run<sendIllegalChar>, "?property value schematic page x y?", "Design check: illegal characters.", reportFile, "", nullptr},
  {"sendPinNC",              run<sendPinNc>, "?reference pin schematic page x y?", "Design check: unconnected pins.", reportFile, "", nullptr},
  {"sendNetlist",            run<sendNetlist>, "?kind reference second schematic page x y?", "Design check: netlist.", reportFile, "", nullptr},
  {"checkCharIllegal",       run<checkCharIllegal>, "name", "Answers 1 for a name that is empty or not all ASCII, else 0.", exportFile, "", nullptr},
  {"initGraphicFile",        run<initGraphicFile>, "", "Starts a graphic library.", exportFile, "", nullptr},
  {"addGraphicLibList",      run<addGraphicLibList>, "record", "Adds one record to the graphic library.", exportFile, "", nullptr},
  {"outputGraphicFile",      run<outputGraphicFile>, "name", "Writes the graphic library and answers its path.", exportFile, "", nullptr},
  {"sendOlbPackageInfo",     run<sendOlbPackageInfo>, "properties", "Package report of a library.", reportFile, "", nullptr},
  {"sendDsnPackageInfo",     run<sendDsnPackageInfo>, "properties", "Package report of a design.", reportFile, "", nullptr},
  {"sendOlbObjectPackageInfo", run<sendOlbObjectPackageInfo>, "properties", "Package report of a library object.", reportFile, "", nullptr},
  {"writeToClipboard",       run<writeToClipboard>, "text", "Puts a text on the clipboard.", desktopFile, "", nullptr},
  {"PlacePartProperty",      run<placePartProperty>, "", "Sets the properties of the part that was placed.", placementFile, "", nullptr},
  {"execTool",               run<execTool>,               "", "Starts the companion.", smallFile, "", nullptr},
}};
// clang-format on

consteval bool namesDiffer() {
  for (std::size_t first = 0; first < table.size(); ++first) {
    for (std::size_t second = first + 1; second < table.size(); ++second) {
      if (std::string_view(table[first].name) == table[second].name) {
        return false;
      }
    }
  }
  return true;
}
static_assert(namesDiffer());

}  // namespace

const std::array<CommandRow, commandCount>& commandTable() {
  return table;
}

}  // namespace vernoxa
