#include "plugin/host_procedures.h"

#include "dispatch/handler.h"

namespace vernoxa::plugin {
namespace {

using row::argument;
using row::optional;

constexpr bool atLoad = true;

template <class... Each>
consteval Few<Argument, 9> given(Each... arguments) {
  return {{arguments...}, sizeof...(arguments)};
}

constexpr Argument path = argument("path", "Full path of an open design, in double quotes, each backslash doubled.");
constexpr Argument pathAsItCame =
    argument("path", "Full path in double quotes, as in the request: Tcl takes its single backslashes for escapes.");
constexpr Argument reference = argument("reference", "Reference designator, as a bare word.");
constexpr Argument type = argument("type", "Whole number, as in the request.");
constexpr Argument library = argument("library", "Full path of the .olb file, with / between folders.");
constexpr Argument libraryPart = argument("name", "Name of the part, in braces.");
constexpr Argument partIndex = argument("index", "Which section of the part, or a list of one empty text.");
constexpr Argument partType = argument("type", "Type of the part, or a list of one empty text.");
constexpr Argument box = argument("box", "List of the outline's coordinates: x1 y1 x2 y2.");
constexpr Argument properties = argument("properties", "List of lists of name and value.");
constexpr Argument graphics = argument("graphics", "List of elements: each a list of kind, data and properties.");
constexpr Argument displayed = argument("displayed", "List of lists of name and value: the properties that are shown.");
constexpr Argument designator = argument("designator", "Letter of the section, or a list of one empty text.");

constexpr const char* ignored = "Ignored.";
constexpr const char* oneWhenDone = "1 when it was done; any other text goes back as the error.";
constexpr const char* reports = "Ignored: the result comes through the plug-in's own command for it.";
constexpr const char* bomList =
    "A list of lines, each six fields with ; between them: part number; value; reference designators; part name; "
    "footprint; number of pins. NULL stands for a property that a part does not have. An error counts as an empty "
    "list; "
    "a text that is not a list, or a line that is too short, shows a box and ends the reading of all lists.";

// clang-format off
constexpr HostProcedure procedures[] = {
  // the link
  {"creatServerForPthread", given(), ignored,
    "Listens on 127.0.0.1, port 9610, and hands each packet that comes there to packetParserForPthread.", atLoad},
  {"creatClient", given(argument("renew", "1 for a new connection, 0 if the former one should still exist.")),
    "0 if there is a connection to the companion.",
    "Connects to the companion on 127.0.0.1, port 9601, and hands each packet from there to packetParser."},
  {"sendPacketGlobalHandle", given(argument("packet", "Packet text, in double quotes.")),
    "An error means that nothing was sent; any other answer is passed on unchanged.",
    "Sends a packet text to the companion: its length in four bytes, little-endian, then the text."},
  // the editor and its designs
  {"GetProductVersion", given(), "The version; 16.3 and 16.5 are hosts that give texts in the code page.",
    "Tells the host's version.", atLoad},
  {"InitPath", given(),
    "Full paths of all open files, with ; between them. Those that end in .dsn or .DSN are reported.",
    "Lists what is open in the host."},
  {"getDsnPinCount",
    given(argument("path", "Full path in double quotes, each backslash doubled; ReadOpenPath leaves them single.")),
    "Number of pins, or -1 when the design is not open, which is then not reported.", "Counts the pins of a design."},
  {"GetActiveProPages", given(),
    "A list of open projects, each a list of its path and its pages' names. Empty or an error: the request fails.",
    "Lists the open projects with their pages."},
  {"GetNetsList", given(path, argument("file", "Full path of the file to write, in the same way.")),
    "An error or a text that begins with Error fails; any other text goes back.", "Writes the nets of a design."},
  {"saveFile", given(path), ignored, "Saves a design."},
  {"getAllPropertyName", given(pathAsItCame), "A list of names. Empty or an error: the request fails.",
    "Lists the property names of a design's parts."},
  {"getGuid", given(pathAsItCame, argument("renew", "Always 1.")),
    "The identifier. A text that begins with Invalid, or an error: the request fails.",
    "Gives a design a new identifier. First tried as one word with the path, then with a space between them."},
  {"AutoDeal", given(pathAsItCame, argument("values", "List of the request's texts, in their order.")), ignored,
    "Processes a design with the values that the user chose."},
  {"ClearCurrentDesign", given(), ignored, "Clears the current design."},
  {"Exit", given(), ignored, "Closes the editor."},
  // bills of materials
  {"::capGenerateBOMUtil::init", given(), ignored, "Prepares the lists of bills of materials.", atLoad},
  {"generateBOMForPath", given(pathAsItCame,
      argument("numberKey", "Property that is the part number, in double quotes."),
      argument("nameKey", "Property that is the part name, in double quotes.")), ignored,
    "Makes the bill of materials that the next three procedures return."},
  {"::capGenerateBOMUtil::getStickList", given(), bomList, "Answers the parts that are fitted."},
  {"::capGenerateBOMUtil::getNotStickList", given(), bomList, "Answers the parts that are not fitted."},
  {"::capGenerateBOMUtil::getNoPartNumberList", given(), bomList, "Answers the parts without a part number."},
  {"setRefToUse", given(path, reference), ignored, "Marks a part as fitted."},
  {"setRefToNotUse", given(path, reference), ignored, "Marks a part as not fitted."},
  {"setAllNotStick", given(path), ignored, "Marks all parts as not fitted."},
  {"setEnterViewMode", given(path, argument("fitted", "Reference designators as bare words, a comma behind each.")),
    ignored,
    "Enters the BOM view with these parts fitted."},
  {"LockBomView", given(path, argument("locked", "1 to lock, 0 to free.")), ignored,
    "Locks or frees the BOM view."},
  {"switchStickOrNotStick", given(optional(argument("asked", "0 in a request; the action of the editor has none."))),
    "Any text, which goes back.",
    "Switches the fitting of the selected parts, and sends what changed by sendAddToBom or sendRemoveFromBom."},
  // pages, references and jumps
  {"KX_PlaceWirePort", given(type, argument("nets", "Always empty.")), oneWhenDone, "Places ports on wires."},
  {"KX_PlaceWireOffPage", given(type, argument("nets", "Always empty.")), oneWhenDone,
    "Places off-page connectors on wires."},
  {"ReplaceRefAndValue", given(), oneWhenDone, "Moves the texts of references and values to their places."},
  {"RenameRef", given(type), oneWhenDone, "Numbers the reference designators of the active design."},
  {"JumpToDsn", given(path, argument("schematic", "Name of the schematic, in double quotes."),
      argument("page", "Name of the page, in double quotes."), argument("position", "List of x and y.")), ignored,
    "Opens a page and goes to a position on it."},
  {"gotoLocation", given(pathAsItCame, reference), "Ignored, except that an error fails the request.",
    "Goes to a part."},
  {"ZoomIn", given(), ignored, "Together with ZoomOut makes the editor draw again."},
  {"ZoomOut", given(), ignored, "Together with ZoomIn makes the editor draw again."},
  {"convertToSVG", given(pathAsItCame), "Any text. Empty or an error: the request fails.",
    "Hands all pages over by the drawing commands. First tried as one word with the path, then with a space between."},
  // checks and reports
  {"RunCheck", given(pathAsItCame), reports, "Checks a design."},
  {"RunCheckActiveProj", given(pathAsItCame), reports, "Checks the active project."},
  {"GetAllPackage", given(pathAsItCame), reports, "Reports the parts of a design by sendDsnPackageInfo."},
  {"GetOlbAllPackage", given(pathAsItCame), reports, "Reports the parts of a library by sendOlbPackageInfo."},
  {"GetOlbObjectPackage", given(pathAsItCame, argument("name", "Name of the part, as a bare word.")), reports,
    "Reports one part of a library by sendOlbObjectPackageInfo. First tried with no space between path and name."},
  // modules and placing
  {"getSelectPart", given(argument("page", "Name of the page, in double quotes.")), reports,
    "Offers the selected parts of a page as a module, by the commands for modules."},
  {"MenuCommand", given(argument("number", "Always 57603, the menu's entry that saves.")), ignored,
    "Carries out an entry of the editor's menu."},
  {"IsSchematicViewActive", given(), "1 when a schematic page is active; else nothing is placed.",
    "Tells whether a page is active."},
  {"UnSelectAll", given(), ignored, "Selects nothing."},
  {"SetLibViewBox", given(argument("size", "List of width and height.")), ignored,
    "Sets the outline that the user drags."},
  {"setPlaceMarketFlag", given(argument("flag", "1 for a module, 2 for one part of a library.")), ignored,
    "Says what is going to be placed."},
  {"PlaceNew", given(argument("first", "For a part its name; for a module the path of its library."),
      argument("second", "For a part the path of its library, in braces; for a module the word ViewBox."),
      optional(argument("third", "For a part its index; for a module the list of its width and height."))), ignored,
    "Has the user drag what will be placed; where it is dropped the host calls placeMarketPart."},
  {"placeLibPart", given(library, libraryPart, partIndex, partType, box, properties, graphics, displayed, designator),
    ignored, "Makes one part in a library."},
  {"setPinNum", given(library, libraryPart, partIndex, partType, box, properties, graphics, displayed, designator),
    ignored, "Sets the pin numbers of a part that placeLibPart made."},
  {"placePart", given(argument("kind", "Kind of the object; Part or SetProperty for one part of a library."),
      argument("designator", "The module's designator field, or -1 for one part of a library."),
      argument("first", "List of lists of name and value: properties, or where and how one part is placed."),
      argument("second", "The same: the object's data, each point as NewPoint, or the properties of one part."),
      displayed), ignored, "Places an object, or sets the properties of the part that was placed last."},
  // the editor's menus
  {"RegisterAction", given(argument("name", "Name of the action."),
      argument("enable", "Procedure that says whether it is possible."), argument("key", "Its key."),
      argument("handler", "Procedure that carries it out."), argument("view", "The view that it belongs to.")), ignored,
    "Makes an action of the editor.", atLoad},
  {"InsertXMLMenu", given(argument("menu", "List of the menu's entries.")), ignored, "Makes a menu.", atLoad},
};
// clang-format on
static_assert(namesDiffer(procedures), "two rows of one name");
static_assert(longestFills(procedures, &HostProcedure::arguments), "too much room");

}  // namespace

std::span<const HostProcedure> hostProcedures() {
  return procedures;
}

}  // namespace vernoxa::plugin
