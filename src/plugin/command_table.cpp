#include "plugin/command_table.h"

#include <string_view>

#include "bom/bom_commands.h"
#include "commands/packet_door.h"
#include "desktop/desktop_commands.h"
#include "link/file_status_commands.h"
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

constexpr const char* linkFile = "link/file_status_commands.cpp";
constexpr const char* bomFile = "bom/bom_commands.cpp";
constexpr const char* doorFile = "commands/packet_door.cpp";
constexpr const char* desktopFile = "desktop/desktop_commands.cpp";
constexpr const char* smallFile = "plugin/small_commands.cpp";
constexpr CommandFunction notYet = nullptr;

// clang-format off
constexpr std::array<CommandRow, commandCount> table = {{
  {"packetParser",           run<packetParser>,           "packetText", "Carries out one packet of the companion and answers the packet text of the reply.", doorFile, "", nullptr},
  {"packetParserForPthread", run<packetParserForPthread>, "packetText", "The same for a packet of the link thread.", doorFile, "", nullptr},
  {"SelectJumpPart",         run<selectJumpPart>, "candidates number", "Lets the user pick one of several parts.", desktopFile, "", nullptr},
  {"ReadOpenPath",           run<readOpenPath>,           "path", "Answers the packet text that reports an opened design.", linkFile, "", nullptr},
  {"sendCloseFile",          run<sendCloseFile>,          "path", "Answers the packet text that reports a closed design.", linkFile, "", nullptr},
  {"serverLinkBreak",        run<serverLinkBreak>,        "", "Notes that the host's connection to the companion broke.", linkFile, "", nullptr},
  {"tryUpdateBom",           run<tryUpdateBom>, "", "Asks the companion to refresh its bill of materials.", bomFile, "", nullptr},
  {"sendAddToBom",           run<sendAddToBom>, "parts", "Answers the packet text that reports parts as fitted.", bomFile, "", nullptr},
  {"sendRemoveFromBom",      run<sendRemoveFromBom>, "parts", "Answers the packet text that reports parts as not fitted.", bomFile, "", nullptr},
  {"getOpenFileCount",       run<getOpenFileCount>,       "", "Answers the number of open designs.", linkFile, "0", nullptr},
  {"getGenerateGuid",        run<getGenerateGuid>,        "", "Answers a new GUID.", smallFile, "", nullptr},
  {"outputWarming",          run<outputWarming>,          "", "Tells the user to select a part first.", smallFile, "", nullptr},
  {"selectAddOrRemoveFromBom", run<selectAddOrRemoveFromBom>, "", "Tells the host's script to go on.", bomFile, "1", nullptr},
  {"sendSaveFile",           run<sendSaveFile>,           "path", "Answers the packet text that reports a saved design.", linkFile, "1", nullptr},
  {"addToPageList",          notYet, "record", "Adds one object of a page to the drawing.", "", "", nullptr},
  {"addToLibList",           notYet, "record", "Adds one record of a library symbol to the drawing.", "", "", nullptr},
  {"initSVGList",            notYet, "", "Starts a drawing export.", "", "", nullptr},
  {"outputSVGFile",          notYet, "names", "Writes the last page of a drawing export.", "", "", nullptr},
  {"GetClipBoardPic",        run<getClipBoardPic>, "", "Saves the clipboard's picture as the preview and answers its path.", desktopFile, "", nullptr},
  {"GetMousePosition",       run<getMousePosition>, "", "Answers the cursor's position.", desktopFile, "", nullptr},
  {"outputError",            run<outputError>,            "?code?", "Shows the message of an error code.", smallFile, "", nullptr},
  {"initMarketFile",         notYet, "", "Starts the export of a shared module.", "", "", nullptr},
  {"addMarketPartList",      notYet, "record", "Adds one schematic object to the module.", "", "", nullptr},
  {"addMarketLibList",       notYet, "record", "Adds one record of a library part to the module.", "", "", nullptr},
  {"outputMarketFile",       notYet, "name width height unused", "Writes the module and answers its path.", "", "", nullptr},
  {"getOlbPath",             notYet, "", "Answers the temporary library's path.", "", "", nullptr},
  {"sendUploadMarket",       notYet, "sumPins selfPins copyPrice parts wires ?keys?", "Hands a module over to the companion.", "", "", "sendUploadMarket exception"},
  {"placeMarketPart",        notYet, "", "Places the module that the companion named.", "", "", nullptr},
  {"afterPlace",             run<afterPlace>, "", "Ends the host's placement mode.", desktopFile, "", nullptr},
  {"getNewOlbPath",          notYet, "", "Answers the new library's path.", "", "", nullptr},
  {"GetResPath",             notYet, "resourceId", "Answers where the companion keeps a module.", "", "", nullptr},
  {"pressEnter",             run<pressEnter>, "", "Presses Enter after a moment.", desktopFile, "", nullptr},
  {"getSelfUserId",          notYet, "", "Answers the signed-in user's id.", "", "", nullptr},
  {"removeDatFile",          notYet, "", "Removes the files of a placement.", "", "", nullptr},
  {"sendRefRepetition",      notYet, "?kind reference second schematic page x y?", "Design check: reference designators.", "", "", nullptr},
  {"sendIllegalChar",        notYet, "?property value schematic page x y?", "Design check: illegal characters.", "", "", nullptr},
  {"sendPinNC",              notYet, "?reference pin schematic page x y?", "Design check: unconnected pins.", "", "", nullptr},
  {"sendNetlist",            notYet, "?kind reference second schematic page x y?", "Design check: netlist.", "", "", nullptr},
  {"checkCharIllegal",       notYet, "name", "Answers 1 for a name that is empty or not all ASCII, else 0.", "", "", nullptr},
  {"initGraphicFile",        notYet, "", "Starts a graphic library.", "", "", nullptr},
  {"addGraphicLibList",      notYet, "record", "Adds one record to the graphic library.", "", "", nullptr},
  {"outputGraphicFile",      notYet, "name", "Writes the graphic library and answers its path.", "", "", nullptr},
  {"sendOlbPackageInfo",     notYet, "properties", "Package report of a library.", "", "", nullptr},
  {"sendDsnPackageInfo",     notYet, "properties", "Package report of a design.", "", "", nullptr},
  {"sendOlbObjectPackageInfo", notYet, "properties", "Package report of a library object.", "", "", nullptr},
  {"writeToClipboard",       run<writeToClipboard>, "text", "Puts a text on the clipboard.", desktopFile, "", nullptr},
  {"PlacePartProperty",      notYet, "", "Sets the properties of the part that was placed.", "", "", nullptr},
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
