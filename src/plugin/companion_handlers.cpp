// The table of the companion's commands. A new command is one row here and one function in the file it belongs to.
#include "plugin/companion_handlers.h"

#include "modules/placing_handlers.h"

namespace vernoxa {
namespace {

using Place = PlacementContext;

constexpr auto text = MemberKind::text;
constexpr auto number = MemberKind::number;
constexpr auto textOrNumber = MemberKind::textOrNumber;
constexpr auto array = MemberKind::array;
constexpr auto needed = MemberUse::needed;
constexpr auto optional = MemberUse::optional;
constexpr bool placing = true;

constexpr Member designPath{"ProjectPath", text, needed};

constexpr std::array rows = {
    HandlerRow{"GetActiveProPages", getActiveProPages, {}, "Lists the open projects with their pages."},
    HandlerRow{"SetPlacePortType", setPlacePortType, {{{"Type", number, needed}}}, "Places ports on wires."},
    HandlerRow{"SetPlaceOffpageType",
               setPlaceOffpageType,
               {{{"Type", number, needed}}},
               "Places off-page connectors on wires."},
    HandlerRow{"AdjustRefAndValue", adjustRefAndValue, {}, "Moves reference and value texts to their places."},
    HandlerRow{"RenameRef", renameRef, {{{"Type", number, needed}}}, "Numbers the reference designators anew."},
    HandlerRow{"GetOlbObjectPackageInfo",
               getOlbObjectPackageInfo,
               {{designPath, {"ObjName", text, needed}}},
               "Has the package report of one library part sent."},
    HandlerRow{
        "GetDsnAllPackageInfo", getDsnAllPackageInfo, {{designPath}}, "Has the package report of a design sent."},
    HandlerRow{
        "GetOlbAllPackageInfo", getOlbAllPackageInfo, {{designPath}}, "Has the package report of a library sent."},
    HandlerRow{"DsnCheck", dsnCheck, {{designPath}}, "Checks a design; findings come as messages of their own."},
    HandlerRow{"DsnCheckActiveProj", dsnCheckActiveProj, {{designPath}}, "Checks the active project in the same way."},
    HandlerRow{"JumpToDsn",
               jumpToDsn,
               {{designPath, {"PageName", text, needed}, {"PagePos", text, needed}, {"Sch", text, needed}}},
               "Opens a page and goes to a position on it."},
    HandlerRow{"AutoDealwithDsn",
               autoDealwithDsn,
               {{designPath, {"id", text, optional}}},
               "Has the host treat a design with the given values."},
    HandlerRow{"SelectModule",
               selectModule,
               {{{"Page", text, needed},
                 {"ProjectPath", text, optional},
                 {"priceK", text, optional, &Place::priceK},
                 {"pinPrice", text, optional, &Place::pinPrice}}},
               "Has the selected parts of a page offered as a module."},
    HandlerRow{"ClearCurrentDesign", clearCurrentDesign, {}, "Clears the current design."},
    HandlerRow{"PlaceDsnLibPartModule",
               placeDsnLibPartModule,
               {{{"PartIndex", textOrNumber, needed, &Place::PartIndex},
                 {"Designator", text, optional, &Place::selfModule},
                 {"dsnDatPath", text, optional, &Place::dsnDatPath},
                 {"ViewBoxWidth", textOrNumber, needed},
                 {"ViewBoxHeight", textOrNumber, needed},
                 {"packageName", text, optional, &Place::packageName},
                 {"PartNumber", text, optional, &Place::PartNumber},
                 {"PartName", text, needed, &Place::PartName},
                 {"prefix", text, optional, &Place::prefix},
                 {"value", text, optional, &Place::value},
                 {"cateId", text, optional, &Place::cateId},
                 {"companyId", text, optional, &Place::companyId},
                 {"Package", text, optional, &Place::package}}},
               "Has the user place one part of a downloaded library.",
               placing},
    HandlerRow{"PlaceDSNModule",
               placeDsnModule,
               {{{"sumPins", text, optional, &Place::sumPins},
                 {"price", text, optional, &Place::price},
                 {"dsnDatPath", text, optional, &Place::dsnDatPath},
                 {"dsnBmpPath", text, optional, &Place::dsnBmpPath},
                 {"uploadResId", text, optional, &Place::uploadResId},
                 {"uploadUserId", text, optional, &Place::uploadUserId},
                 {"selfModule", text, optional, &Place::selfModule}}},
               "Has the user place a downloaded module.",
               placing},
    HandlerRow{"GenerateBOM",
               generateBom,
               {{designPath, {"PartNumberKey", text, optional}, {"PartNameKey", text, optional}}},
               "Makes the bill of materials and answers its three lists."},
    HandlerRow{"JumpToPartRef",
               jumpToPartRef,
               {{{"ProjectPath", text, optional}, {"PartRef", text, optional}}},
               "Goes to a part. Answers \"No PartRef\" without one, and is refused without a project."},
    HandlerRow{"CheckOpenState", checkOpenState, {{designPath}}, "Tells whether a design is open in the host."},
    HandlerRow{"SwitchStickOrNotStick", switchStickOrNotStick, {}, "Switches the selected parts' fitting."},
    HandlerRow{"SetToNotStick", setToNotStick, {{designPath, {"item", array, needed}}}, "Marks parts as not fitted."},
    HandlerRow{"SetToStick", setToStick, {{designPath, {"item", array, needed}}}, "Marks parts as fitted."},
    HandlerRow{"Cancel", cancel, {{designPath}}, "Answers the path with which the host ends its view."},
    HandlerRow{"ExitBomViewMode", exitBomViewMode, {{designPath}}, "Leaves the BOM view."},
    HandlerRow{"EnterBomViewMode",
               enterBomViewMode,
               {{designPath, {"Stick", array, needed}}},
               "Enters the BOM view with the given parts fitted."},
    HandlerRow{"GetPartPropertyList", getPartPropertyList, {{designPath}}, "Lists the property names of a design."},
    HandlerRow{"SetNewGuid", setNewGuid, {{designPath}}, "Gives a design a new identifier."},
    HandlerRow{"CreateSVG", createSvg, {{designPath}}, "Exports the drawings of a design."},
    HandlerRow{"CloseOrcad", closeOrcad, {}, "Closes the host."},
};
static_assert(namesDiffer(rows));

}  // namespace

std::span<const HandlerRow> companionHandlers() {
  return rows;
}

}  // namespace vernoxa
