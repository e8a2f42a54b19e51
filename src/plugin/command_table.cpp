#include "plugin/command_table.h"

#include <tcl.h>

#include <iterator>
#include <utility>

#include "bom/bom_commands.h"
#include "checks/report_commands.h"
#include "designs/file_status_commands.h"
#include "desktop/desktop_commands.h"
#include "drawing/export_commands.h"
#include "modules/module_commands.h"
#include "modules/placement_commands.h"
#include "modules/request_commands.h"
#include "plugin/endpoints.h"
#include "plugin/misc_commands.h"
#include "plugin/run.h"
#include "views/selection_commands.h"

namespace vernoxa::plugin {
namespace {

using row::argument;
using row::calls;
using row::optional;

template <class... Each>
consteval ArgumentList takes(Each... arguments) {
  return {{{arguments...}, sizeof...(arguments)}};
}

// Takes all of them, or none.
template <class... Each>
consteval ArgumentList takesAllOr(const char* without, Each... arguments) {
  return {{{arguments...}, sizeof...(arguments)}, without};
}

consteval CommandAnswer answersNothing() {
  return {};
}

consteval CommandAnswer answersText(const char* meaning) {
  return {ResultKind::plain, meaning};
}

consteval CommandAnswer answersPacket(const char* meaning) {
  return {ResultKind::packetText, meaning};
}

constexpr Argument designPath = argument("path", "Full path of the design, as the host writes it.");
constexpr Argument bomLines =
    argument("parts", "A list of lines of six fields with ; between them; x stands for a missing part number.");
constexpr Argument record = argument("record", "A list: a kind, then the elements that this kind has.");
constexpr Argument schematic = argument("schematic", "Name of the schematic.");
constexpr Argument page = argument("page", "Name of the page.");
constexpr Argument x = argument("x", "The x coordinate on the page, in the host's units.");
constexpr Argument y = argument("y", "The y coordinate.");

constexpr CommandAnswer fileStatus =
    answersPacket("A FileStatus; empty when the path is empty or has no name in the code page.");

// clang-format off
constexpr CommandRow commands[] = {
  {"packetParser", run<packetParser>,
    takes(argument("packetText", "Packet text of a request of the companion, or of its answer to a message.")), calls(),
    answersPacket("The reply; empty when there is none."),
    "Carries out one packet of the companion and answers the packet text of the reply."},
  {"packetParserForPthread", run<packetParserForPthread>,
    takes(argument("packetText", "Packet text of a request of the link thread.")), calls(),
    answersPacket("The reply; empty when there is none."),
    "Carries out one packet of the link thread and answers the packet text of the reply."},
  {"SelectJumpPart", run<views::selectJumpPart>,
    takes(argument("candidates", "The parts, with ; between them; shown sorted by their bytes."),
          argument("number", "Needed, but not read.")), calls(),
    answersText("The part that the user picked, as it was given; empty when the user picked none."),
    "Lets the user pick one of several parts."},
  {"ReadOpenPath", run<designs::readOpenPath>, takes(designPath), calls("getDsnPinCount"), fileStatus,
    "Answers the packet text that reports an opened design.", "1"},
  {"sendCloseFile", run<designs::sendCloseFile>, takes(designPath), calls(), fileStatus,
    "Answers the packet text that reports a closed design.", "1"},
  {"serverLinkBreak", run<designs::serverLinkBreak>, takes(), calls(), answersNothing(),
    "Notes that the host's connection to the companion broke."},
  {"tryUpdateBom", run<bom::tryUpdateBom>, takes(), calls("sendPacketGlobalHandle"), answersNothing(),
    "Asks the companion to refresh its bill of materials."},
  {"sendAddToBom", run<bom::sendAddToBom>,
    takes(bomLines), calls(), answersPacket("An AddToBom; empty without an argument."),
    "Answers the packet text that reports parts as fitted."},
  {"sendRemoveFromBom", run<bom::sendRemoveFromBom>,
    takes(bomLines), calls(), answersPacket("A RemoveFromBom; empty without an argument."),
    "Answers the packet text that reports parts as not fitted."},
  {"getOpenFileCount", run<designs::getOpenFileCount>, takes(), calls(),
    answersText("Their number when the link thread last asked, in decimal digits."), "Counts the open designs.", "0"},
  {"getGenerateGuid", run<getGenerateGuid>, takes(), calls(),
    answersText("The GUID without braces: the third group in lower case, the others in upper case."),
    "Answers a new GUID."},
  {"outputWarming", run<outputWarming>, takes(), calls(), answersNothing(), "Tells the user to select a part first."},
  {"selectAddOrRemoveFromBom", run<bom::selectAddOrRemoveFromBom>, takes(), calls(), answersText("Always 1."),
    "Tells the host's script to go on.", "1"},
  {"sendSaveFile", run<designs::sendSaveFile>, takes(designPath), calls(), fileStatus,
    "Answers the packet text that reports a saved design.", "1"},
  {"addToPageList", run<drawing::addToPageList>, takes(record), calls("GetProductVersion"),
    answersNothing(), "Adds one object of a page to the drawing."},
  {"addToLibList", run<drawing::addToLibList>, takes(record),
    calls("GetProductVersion"), answersNothing(), "Adds one record of a library symbol to the drawing."},
  {"initSVGList", run<drawing::initSVGList>, takes(), calls(), answersNothing(), "Starts a drawing export."},
  {"outputSVGFile", run<drawing::outputSVGFile>,
    takes(argument("names", "A list: elements 0, 1 and 4 are schematic, page and page key of the last page.")),
    calls(), answersNothing(), "Writes the last page of a drawing export."},
  {"GetClipBoardPic", run<desktop::getClipBoardPic>, takes(), calls(),
    answersText("Full path of Cache\\Output\\Preview.bmp below the project's folder; empty when there is no picture."),
    "Saves the clipboard's picture as the preview and answers its path."},
  {"GetMousePosition", run<desktop::getMousePosition>, takes(), calls(),
    answersText("x, a space, y, in pixels of the screen."),
    "Answers the cursor's position."},
  {"outputError", run<modules::outputError>,
    takes(optional(argument("code",
          "OtherProject, NoObject, MoreThanPage, InvaildObject, or another text, which it shows."))),
    calls(), answersNothing(), "Shows the message of an error code."},
  {"initMarketFile", run<modules::initMarketFile>, takes(), calls(), answersNothing(),
    "Starts the export of a shared module."},
  {"addMarketPartList", run<modules::addMarketPartList>, takes(record), calls(), answersNothing(),
    "Adds one schematic object to the module."},
  {"addMarketLibList", run<modules::addMarketLibList>, takes(record), calls(), answersNothing(),
    "Adds one record of a library part to the module."},
  {"outputMarketFile", run<modules::outputMarketFile>,
    takes(argument("name", "Not used."), argument("width", "Width of the module, in the host's units."),
          argument("height", "Height of the module."), argument("unused", "Not used.")), calls(),
    answersText("Full path of Cache\\Share\\ModuleLib.json below the project's folder, written or not."),
    "Writes the module and answers its path."},
  {"getOlbPath", run<modules::getOlbPath>, takes(), calls(),
    answersText("Full path of the .olb file of the last placement, with / between folders."),
    "Answers the temporary library's path."},
  {"sendUploadMarket", run<modules::sendUploadMarket>, takes(argument("sumPins", "Number of pins in all."),
          argument("selfPins", "Number of the user's own pins."), argument("copyPrice", "Price of a copy."),
          argument("parts", "The parts, with ; between them; each is Id,Ref or Id,Ref,Package."),
          argument("wires", "The nets, with ; between them."),
          optional(argument("keys", "Words to find the module by, with ; between them."))),
    calls("sendPacketGlobalHandle"),
    answersText("What sendPacketGlobalHandle answered."), "Sends a module to the companion.", "",
    "sendUploadMarket exception"},
  {"placeMarketPart", run<modules::placeMarketPart>, takes(),
    calls("placeLibPart", "setPinNum", "placePart"), answersNothing(),
    "Places the module that the companion has named."},
  {"afterPlace", run<desktop::afterPlace>, takes(), calls(), answersNothing(), "Ends the host's placement mode."},
  {"getNewOlbPath", run<modules::getNewOlbPath>, takes(), calls(),
    answersText("Full path of the .olb file of the last placement, with / between folders."),
    "Answers the new library's path."},
  {"GetResPath", run<modules::getResPath>, takes(argument("resourceId", "Identifier of the module.")), calls(),
    answersText("Full path of its file, with doubled backslashes; empty when there is none."),
    "Answers where the companion keeps a module."},
  {"pressEnter", run<desktop::pressEnter>, takes(), calls(), answersNothing(), "Presses Enter after 0.2 s."},
  {"getSelfUserId", run<modules::getSelfUserId>, takes(), calls(),
    answersText("The id; empty when the companion did not answer."), "Answers the signed-in user's id."},
  {"removeDatFile", run<modules::removeDatFile>, takes(), calls(), answersNothing(),
    "Removes the files of a placement."},
  {"sendRefRepetition", run<checks::sendRefRepetition>, takesAllOr("It ends the check.",
               argument("kind", "NoRefNum: a part without a number; RefRepe: two of one number."),
               argument("reference", "Reference designator of the part."),
               argument("second", "The other part's reference designator."), schematic, page, x, y),
    calls("sendPacketGlobalHandle"), answersNothing(), "Design check: reference designators."},
  {"sendIllegalChar", run<checks::sendIllegalChar>,
    takesAllOr("It ends the check.", argument("property", "Name of the property."),
               argument("value", "Its value, with the characters that it must not have."), schematic, page, x, y),
    calls("sendPacketGlobalHandle"), answersNothing(), "Design check: illegal characters."},
  {"sendPinNC", run<checks::sendPinNc>,
    takesAllOr("It ends the check.", argument("reference", "Reference designator of the part."),
               argument("pin", "Number of the pin."), schematic, page, x, y), calls("sendPacketGlobalHandle"),
    answersNothing(), "Design check: unconnected pins."},
  {"sendNetlist", run<checks::sendNetlist>, takesAllOr("It ends the check.",
               argument("kind", "NoFootprint, FootprintDiff, NoPinNumber, RepePinName, RepePinNum, ValueDiff."),
               argument("reference", "Reference designator of the part."),
               argument("second", "Pin number, pin name or value, by the kind."), schematic, page, x, y),
    calls("sendPacketGlobalHandle"), answersNothing(), "Design check: netlist."},
  {"checkCharIllegal", run<drawing::checkCharIllegal>, takes(argument("name", "The name to look at.")), calls(),
    answersText("1 for a name that is empty or not all ASCII, else 0."),
    "Answers 1 for a name that is empty or not all ASCII, else 0."},
  {"initGraphicFile", run<drawing::initGraphicFile>, takes(), calls(), answersNothing(), "Starts a graphic library."},
  {"addGraphicLibList", run<drawing::addGraphicLibList>, takes(record), calls(), answersNothing(),
    "Adds one record to the graphic library."},
  {"outputGraphicFile", run<drawing::outputGraphicFile>,
    takes(argument("name", "Name of the library; a folder separator in it becomes -.")), calls(),
    answersText("Full path of its file below Cache\\Library of the project's folder, written or not."),
    "Writes the graphic library and answers its path."},
  {"sendOlbPackageInfo", run<checks::sendOlbPackageInfo>,
    takes(argument("properties", "A list of properties, each a list of name and value.")),
    calls("sendPacketGlobalHandle"), answersNothing(), "Package report of a library."},
  {"sendDsnPackageInfo", run<checks::sendDsnPackageInfo>,
    takes(argument("properties", "A list of properties, each a list of name and value.")),
    calls("sendPacketGlobalHandle"), answersNothing(), "Package report of a design."},
  {"sendOlbObjectPackageInfo", run<checks::sendOlbObjectPackageInfo>,
    takes(argument("properties", "A list of properties, each a list of name and value.")),
    calls("sendPacketGlobalHandle"), answersNothing(), "Package report of a library object."},
  {"writeToClipboard", run<desktop::writeToClipboard>,
    takes(argument("text", "The text; what the code page lacks is replaced.")), calls(), answersNothing(),
    "Puts a text on the clipboard."},
  {"PlacePartProperty", run<modules::placePartProperty>, takes(), calls("placePart"), answersNothing(),
    "Sets the properties of the part that was placed."},
  {"execTool", run<execTool>, takes(), calls(), answersNothing(), "Starts the companion."},
};
// clang-format on

static_assert(namesDiffer(commands), "two rows of one name");
static_assert(longestFills(commands, [](const CommandRow& row) { return row.arguments.each; }), "too much room");

// The commands carry no client data, so each row has an entry of its own.
template <std::size_t index>
int entry(ClientData, Tcl_Interp* interp, int count, Tcl_Obj* const objects[]) {
  return guarded(commands[index], interp, count, objects);
}

template <std::size_t... indexes>
void registerAll(Tcl_Interp* interp, std::index_sequence<indexes...>) {
  (Tcl_CreateObjCommand(interp, commands[indexes].name, entry<indexes>, nullptr, nullptr), ...);
}

}  // namespace

std::span<const CommandRow> commandTable() {
  return commands;
}

void registerCommands(Tcl_Interp* interp) {
  registerAll(interp, std::make_index_sequence<std::size(commands)>());
}

}  // namespace vernoxa::plugin
