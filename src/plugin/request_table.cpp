// The tables of requests: what the companion asks, and what the link thread asks. A new request is one row here and one
// function in the room of its topic.
#include "plugin/request_table.h"

#include "bom/bom_handlers.h"
#include "bom/bom_lists.h"
#include "checks/report_handlers.h"
#include "designs/design_handlers.h"
#include "designs/thread_handlers.h"
#include "drawing/export_handlers.h"
#include "modules/placing_handlers.h"
#include "plugin/run.h"
#include "views/view_handlers.h"

namespace vernoxa::plugin {
namespace {

using namespace row;
using row::text;  // the kind of member, not the namespace of the room
using Place = modules::PlacementContext;

// --- members that several requests have ----------------------------------------------------------------------------

constexpr Member designPath =
    text("ProjectPath", "Full path of an open design, as FileStatus named it but with / between its folders.");
constexpr Member libraryPath = text("ProjectPath", "Full path of a symbol library (.olb), with / between its folders.");
constexpr Member modulePath =
    optional(text("dsnDatPath", "Full path of the module file to place; the file is removed after the placement."))
        .keptBy(storeIn<&Place::dsnDatPath>);

constexpr std::array reference = {
    optional(text("PartRef", "Reference designator of a part. An element without it is skipped.")),
};

constexpr std::array openProject = {
    text("ProjectPath", "Full path of the design."),
    texts("Pages", "Names of its pages, in the host's order."),
};

constexpr Answer hostsAnswer = answers().orFails("What the host answered, which was not 1.");
constexpr Answer doneWithEmptyErrInfo = answers().withEmptyErrInfo();
constexpr Answer placed =
    answers().orFails("A text in Chinese that asks to open the page first: no schematic page is active.");

// --- what the companion asks ---------------------------------------------------------------------------------------

// clang-format off
constexpr HandlerRow companionRows[] = {
  {"GetActiveProPages", run<views::getActiveProPages>, needs(), calls("GetActiveProPages"),
    answers(text("ErrInfo", "Always empty.").oneOf(""), objects("Open", openProject, "The open projects."))
        .orFailsInData("The host's error; empty when no project is open."),
    "Lists the open projects with their pages."},
  {"SetPlacePortType", run<views::setPlacePortType>,
    needs(number("Type", "Kind of port, as the host's KX_PlaceWirePort numbers them.")), calls("KX_PlaceWirePort"),
    answers(text("ErrInfo", "Empty, or what the host answered when that was not 1; the result is 0 all the same.")),
    "Places ports on wires."},
  {"SetPlaceOffpageType", run<views::setPlaceOffpageType>,
    needs(number("Type", "Kind of connector, as the host's KX_PlaceWireOffPage numbers them.")),
    calls("KX_PlaceWireOffPage"),
    answers(text("ErrInfo", "Empty, or what the host answered when that was not 1; the result is 0 all the same.")),
    "Places off-page connectors on wires."},
  {"AdjustRefAndValue", run<views::adjustRefAndValue>, needs(), calls("ReplaceRefAndValue"), hostsAnswer,
    "Moves reference and value texts to their places."},
  {"RenameRef", run<views::renameRef>,
    needs(number("Type", "Order of numbering, as the host's RenameRef counts them.")),
    calls("RenameRef"), hostsAnswer, "Numbers the reference designators again."},
  {"GetOlbObjectPackageInfo", run<checks::getOlbObjectPackageInfo>,
    needs(libraryPath, text("ObjName", "Name of a part in the library.")), calls("GetOlbObjectPackage"),
    isFollowedBy("GetOlbObjectPackageInfo_EndResult"), "Has the host send the package report of one library part."},
  {"GetDsnAllPackageInfo", run<checks::getDsnAllPackageInfo>, needs(designPath), calls("GetAllPackage"),
    isFollowedBy("GetDsnAllPackageInfo_EndResult"), "Has the host send the package report of a design."},
  {"GetOlbAllPackageInfo", run<checks::getOlbAllPackageInfo>, needs(libraryPath), calls("GetOlbAllPackage"),
    isFollowedBy("GetOlbAllPackageInfo_EndResult"), "Has the host send the package report of a library."},
  {"DsnCheck", run<checks::dsnCheck>, needs(designPath), calls("RunCheck"), isFollowedBy("DsnCheck_Result"),
    "Checks a design; each finding comes as a message of its own."},
  {"DsnCheckActiveProj", run<checks::dsnCheckActiveProj>, needs(designPath), calls("RunCheckActiveProj"),
    isFollowedBy("DsnCheck_Result"), "Checks the active project in the same way."},
  {"JumpToDsn", run<views::jumpToDsn>,
    needs(designPath,
          text("PageName", "Name of the page; a backslash in it is written [;fanxiegan;], as findings do."),
          text("PagePos", "Where on the page: x, a space, y, in the host's units, as a finding gave it."),
          text("Sch", "Name of the schematic that the page belongs to.")),
    calls("JumpToDsn"), answers(), "Opens a page and goes to a position on it."},
  {"AutoDealwithDsn", run<designs::autoDealwithDsn>,
    needs(designPath, optional(text("id", "Identifier that comes back in the answer; it is one of the values too.")),
          optional(text("*", "A value for the host, under any name. The values are handed over in this order."))),
    calls("AutoDeal"), answers(text("id", "The request's id, empty when it had none.")),
    "Has the host process a design with the given values."},
  {"SelectModule", run<modules::selectModule>,
    needs(optional(text("priceK", "Not used.")),
          optional(text("pinPrice", "Not used.")),
          optional(text("ProjectPath", "Not used: the page is one of the active design.")),
          text("Page", "Name of the page.")),
    calls("getSelectPart"), answers(), "Has the host offer the selected parts of a page as a module."},
  {"ClearCurrentDesign", run<designs::clearCurrentDesign>, needs(), calls("ClearCurrentDesign"), answers(),
    "Clears the current design."},
  {"PlaceDsnLibPartModule", run<modules::placeDsnLibPartModule>,
    needs(textOrNumber("PartIndex", "Which section of the part, counted from 0; getSelfUserId answers it from then on.")
              .keptBy(storeIn<&Place::PartIndex>),
          optional(text("Designator", "Letter of the section; empty when the part has one section."))
              .keptBy(storeIn<&Place::selfModule>),
          modulePath,
          textOrNumber("ViewBoxWidth", "Width of the outline that the user drags, in the host's units."),
          textOrNumber("ViewBoxHeight", "Height of that outline."),
          optional(text("packageName", "Becomes the property PCB Footprint.")).keptBy(storeIn<&Place::packageName>),
          optional(text("PartNumber", "Becomes the property Part Number.")).keptBy(storeIn<&Place::PartNumber>),
          text("PartName", "Part of the library to place; becomes the property Part Name.").keptBy(storeIn<&Place::PartName>),
          optional(text("prefix", "Letters of the reference designator, such as U; the host numbers it."))
              .keptBy(storeIn<&Place::prefix>),
          optional(text("value", "Becomes the property Value.")).keptBy(storeIn<&Place::value>),
          optional(text("cateId", "Not used.")),
          optional(text("companyId", "Not used.")),
          optional(text("Package", "Package of the placed part; packageName when it is empty."))
              .keptBy(storeIn<&Place::package>)),
    calls("MenuCommand", "IsSchematicViewActive", "UnSelectAll", "SetLibViewBox", "placeLibPart", "setPinNum",
          "setPlaceMarketFlag", "PlaceNew"),
    placed, "Lets the user place one part of a downloaded library.", run<modules::stopPlacing>},
  {"PlaceDSNModule", run<modules::placeDsnModule>,
    needs(optional(text("sumPins", "Not used.")),
          optional(text("price", "Not used.")),
          modulePath,
          optional(text("dsnBmpPath", "Path of a picture of the module, which is sent with the next upload."))
              .keptBy(storeIn<&PreviewPicture::path>),
          optional(text("uploadResId", "Identifier of the module; placed objects get it as MarketResID."))
              .keptBy(storeIn<&Place::uploadResId>),
          optional(text("uploadUserId", "Who uploaded it; placed objects get it as MarketUserID."))
              .keptBy(storeIn<&Place::uploadUserId>),
          optional(text("selfModule",
            "1 when it is the user's own: then it may set any property, otherwise only the host's own."))
              .keptBy(storeIn<&Place::selfModule>)),
    calls("IsSchematicViewActive", "UnSelectAll", "placeLibPart", "setPinNum", "setPlaceMarketFlag", "PlaceNew"),
    placed, "Lets the user place a downloaded module.", run<modules::stopPlacing>},
  {"GenerateBOM", run<bom::generateBom>,
    needs(designPath,
          optional(text("PartNumberKey", "Property that is the part number; Part Number when it is empty.")),
          optional(text("PartNameKey", "Property that is the part name; Part Name when it is empty."))),
    calls("GetProductVersion", "generateBOMForPath", "::capGenerateBOMUtil::getStickList",
          "::capGenerateBOMUtil::getNotStickList", "::capGenerateBOMUtil::getNoPartNumberList"),
    answers(objects("Stick", bom::bomMembers, "Parts that are fitted."),
            objects("NotStick", bom::bomMembers, "Parts that are not fitted."),
            objects("NotPartNumber", bom::bomMembers, "Parts without a part number; they may be in another list too.")),
    "Makes the bill of materials and answers its three lists."},
  {"JumpToPartRef", run<views::jumpToPartRef>,
    needs(optional(text("ProjectPath", "Full path of an open design. Without it the request is refused.")),
          optional(text("PartRef", "Reference designator. Without it the request fails."))),
    calls("gotoLocation"),
    answers().orFails("\"No PartRef\" if there is none, \"exec error\" if the host's procedure ends in an error."),
    "Goes to a part. Fails without a \"PartRef\", and is refused without a \"ProjectPath\"."},
  {"CheckOpenState", run<designs::checkOpenState>,
    needs(text("ProjectPath", "Full path of a design, with / or \\ and in upper or lower case.")), calls("InitPath"),
    answers(text("State", "Whether the host has it open.").oneOf("Open|Close")),
    "Tells whether a design is open in the host."},
  {"SwitchStickOrNotStick", run<bom::switchStickOrNotStick>, needs(), calls("switchStickOrNotStick"),
    answers(text("ErrInfo", "What the host answered.")), "Switches the selected parts' fitting."},
  {"SetToNotStick", run<bom::setToNotStick>, needs(designPath, objects("item", reference, "The parts to mark.")),
    calls("setRefToNotUse", "saveFile", "ZoomIn", "ZoomOut"), doneWithEmptyErrInfo, "Marks parts as not fitted."},
  {"SetToStick", run<bom::setToStick>, needs(designPath, objects("item", reference, "The parts to mark.")),
    calls("setRefToUse", "saveFile", "ZoomIn", "ZoomOut"), doneWithEmptyErrInfo, "Marks parts as fitted."},
  {"Cancel", run<designs::cancel>, needs(designPath), calls(),
    answers(text("ExitCommand", "The path between double quotes, in UTF-8.")),
    "Answers the path that the host needs to end its view."},
  {"ExitBomViewMode", run<bom::exitBomViewMode>, needs(designPath),
    calls("LockBomView", "saveFile", "ZoomIn", "ZoomOut"), doneWithEmptyErrInfo, "Leaves the BOM view."},
  {"EnterBomViewMode", run<bom::enterBomViewMode>,
    needs(designPath, texts("Stick", "Reference designators of the parts that are fitted; all others are not.")),
    calls("setAllNotStick", "setEnterViewMode", "LockBomView", "saveFile", "ZoomIn", "ZoomOut"), answers(),
    "Enters the BOM view with the given parts fitted."},
  {"GetPartPropertyList", run<views::getPartPropertyList>, needs(designPath), calls("getAllPropertyName"),
    answers(text("PartNameProperty", "Property that is the part name unless GenerateBOM names another.")
                .oneOf("Part Name"),
            text("PartNumberProperty", "Property that is the part number unless GenerateBOM names another.")
                .oneOf("Part Number"),
            texts("PropertyList", "Names of all properties of the design's parts."))
        .withEmptyErrInfo().orFails("The host's error; empty when there is no property."),
    "Lists the property names of a design."},
  {"SetNewGuid", run<designs::setNewGuid>, needs(designPath), calls("getGuid"),
    answers(text("Guid", "The new identifier, as the host gave it."))
        .withEmptyErrInfo().orFails("The host's error, or its answer if that begins with Invalid."),
    "Gives a design a new identifier."},
  {"CreateSVG", run<drawing::createSvg>, needs(designPath), calls("convertToSVG"),
    answers(text("SVGPath", "Folder of the page files: Cache\\Output below the project's folder."),
            text("PreviewPic", "Preview.bmp in that folder, even if there is no such file."))
        .withEmptyErrInfo().orFails("The host's error; empty when it answered nothing."),
    "Exports the drawings of a design."},
  {"CloseOrcad", run<designs::closeOrcad>, needs(), calls("Exit"), answersNothing(), "Closes the host."},
};
static_assert(namesDiffer(companionRows), "two rows of one name");
static_assert(longestFills(companionRows, &HandlerRow::members), "too much room");
static_assert(longestFills(companionRows, &HandlerRow::calls), "too much room");
static_assert(longestFills(companionRows, [](const HandlerRow& row) { return row.answer.data; }), "too much room");

// --- what the link thread asks -------------------------------------------------------------------------------------

constexpr Answer firstDesign = answers(text("ProjectPath", "Path of the first open design, as the host gave it."))
    .orFails("\"No file!\": no design is open.");

constexpr HandlerRow threadRows[] = {
  {"GetNetsList", run<designs::getNetsList>, needs(text("ProjectPath", "Full path of an open design.")),
    calls("GetNetsList"),
    answers(text("netlistsFile", "Full path of the nets' file: Cache\\Nets.txt below the project's folder."),
            text("datFile", "What the host answered."))
        .orFails("The host's error, or its answer if that begins with Error; \"File not exist\" if it wrote no file."),
    "Writes the nets of a design into a file and names it."},
  {"getDsnPinCount", run<designs::getDsnPinCount>,
    needs(optional(text("ProjectPath", "Path of an open design. It may stand beside \"Command\" instead."))),
    calls("getDsnPinCount"),
    answers(text("PinCount", "Number of pins in decimal digits, or -1 when the host does not have the design.")),
    "Counts the pins of an open design, which the message may also name beside \"Command\"; \"-1\" when the host does "
    "not have it."},
  {"GetNewOpenPath", run<designs::getNewOpenPath>, needs(), calls("InitPath"),
    answers(optional(text("ProjectPath", "Path of the first open design not yet reported, as the host gave it.")),
            text("CloseFile", "Paths of the reported designs that are no longer open, with ; between them."))
        .orFails("\"No file!\": no design is open."),
    "Names the first open design not yet reported, and the reported ones that were closed."},
  {"FileStatus", run<designs::fileStatus>,
    needs(optional(text("Status", "What happened to the design.").oneOf("Open|Save|Close")),
          optional(text("FileName", "Full path of the design. Without it or \"Status\" nothing is passed on.")),
          optional(text("*", "Passed on as it is."))),
    calls("InitPath", "sendPacketGlobalHandle"), firstDesign,
    "Passes a design's status on to the companion and lists the open designs again."},
  {"creatClient", run<designs::creatClient>, needs(), calls("creatClient"),
    answers().orFails("\"creat client failed!\": the host did not answer 0."),
    "Has the host's scripts connect to the companion."},
};
static_assert(namesDiffer(threadRows), "two rows of one name");
// clang-format on

}  // namespace

std::span<const HandlerRow> companionHandlers() {
  return companionRows;
}

std::span<const HandlerRow> threadHandlers() {
  return threadRows;
}

const Endpoint& companionEndpoint() {
  static const Endpoint endpoint{companionHandlers(), run<designs::applyReply>, "command error"};
  return endpoint;
}

const Endpoint& linkEndpoint() {
  static const Endpoint endpoint{threadHandlers(), nullptr, "command1 error"};
  return endpoint;
}

}  // namespace vernoxa::plugin
