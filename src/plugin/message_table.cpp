#include "plugin/message_table.h"

#include "bom/bom_lists.h"

namespace vernoxa::plugin {
namespace {

using namespace row;
using row::text;  // the kind of a member, not the room

template <class... Names>
consteval Few<const char*, 4> from(Names... commands) {
  return {{commands...}, sizeof...(commands)};
}

template <class... Each>
consteval Few<Member, 8> holds(Each... members) {
  return {{members...}, sizeof...(members)};
}

template <class... Each>
consteval Few<Member, 2> expects(Each... members) {
  return {{members...}, sizeof...(members)};
}

constexpr Member fileName = text("FileName", "Full path of the design.");
constexpr Member processId = text("Pid", "The host's process id, in decimal digits.");
constexpr Member hostPath = text("AllegroPath", "Full path of the host's Capture.exe; empty when it was not found.");
constexpr Few<Member, 2> projectFolder = expects(optional(text(
    "Path", "The project's folder: Cache is kept there until an answer names another. Empty or missing: no change.")));

constexpr std::array part = {
    text("Id", "Number of the part in the module."),
    text("Ref", "Its reference designator."),
    optional(text("Package", "Its footprint.")),
};

constexpr std::array property = {text("*", "A property's value, under the property's name.")};

constexpr Member checkId = text("id",
                                "Which check: 1001 reference designators, 1002 illegal characters, 1003 unconnected "
                                "pins, 1004 netlist.")
                               .oneOf("1001|1002|1003|1004");

constexpr auto packageReport = holds(objects("item", property,
                                             "One object with the properties of all parts, without those "
                                             "that the host counts as its own."));

// clang-format off
constexpr MessageRow messages[] = {
  {"FileStatus", "opened", from("ReadOpenPath"), "Command Result Data",
    holds(text("Status", "What happened to the design.").oneOf("Open"), fileName, processId, hostPath,
          text("PinCount", "Number of the design's pins, in decimal digits; empty when it was not asked for.")),
    "A design was opened, or was open when the companion connected.", projectFolder},
  {"FileStatus", "saved", from("sendSaveFile"), "Command Result Data",
    holds(text("Status", "What happened to the design.").oneOf("Save"), fileName, processId, hostPath),
    "A design was saved.", projectFolder},
  {"FileStatus", "closed", from("sendCloseFile"), "Command Result Data",
    holds(text("Status", "What happened to the design.").oneOf("Close"), fileName), "A design was closed.",
    projectFolder},
  {"TryUpdateBom", "", from("tryUpdateBom"), "Command", holds(),
    "The companion should ask for the bill of materials again."},
  {"AddToBom", "", from("sendAddToBom"), "Data Command Result", holds(objects("Stick", bom::bomMembers, "The parts.")),
    "Parts were marked fitted."},
  {"RemoveFromBom", "", from("sendRemoveFromBom"), "Data Command Result",
    holds(objects("NotStick", bom::bomMembers, "The parts.")), "Parts were marked not fitted."},
  {"DsnCheck_Result", "", from("sendRefRepetition", "sendIllegalChar", "sendPinNC", "sendNetlist"),
    "Command Data Result ErrInfo",
    holds(checkId, text("RequiredValue", "Always empty.").oneOf(""),
          text("ActualValue", "What was found: a designator, a value, or designator.pin."),
          text("Comment", "What is wrong: a name, then words in Chinese."),
          text("PagePos", "Where on the page: x, a space, y, in the host's units."),
          text("PageName", "Name of the page; a backslash in it is written [;fanxiegan;]."),
          text("ViewBox", "Always empty.").oneOf(""), text("Sch", "Name of the schematic.")),
    "One finding of a design check."},
  {"DsnCheck_EndResult", "", from("sendRefRepetition", "sendIllegalChar", "sendPinNC", "sendNetlist"),
    "Command Data Result ErrInfo", holds(checkId),
    "One of the four checks is finished; each run of a check sends it once."},
  {"SelectModule_EndResult", "upload", from("sendUploadMarket"), "Data Command Result",
    holds(text("dsnBmpPath", "Full path of a picture of the module; empty when there is none."),
          text("dsnDatPath", "Full path of the module file."), objects("Part", part, "The parts."),
          texts("Wire", "Names of the nets."), texts("Keys", "Words to find the module by."),
          text("sumPins", "Number of pins in all, in decimal digits."),
          text("selfPins", "Number of the user's own pins."), text("copyPrice", "Price of a copy.")),
    "A module to upload.", {}, MessageWay::hostsConnection, true},
  {"GetDsnAllPackageInfo_EndResult", "report", from("sendDsnPackageInfo"), "Command Result Data", packageReport,
    "The properties of a design's parts."},
  {"GetOlbAllPackageInfo_EndResult", "report", from("sendOlbPackageInfo"), "Command Result Data", packageReport,
    "The properties of a library's parts."},
  {"GetOlbObjectPackageInfo_EndResult", "report", from("sendOlbObjectPackageInfo"), "Command Result Data",
    packageReport, "The properties of one part of a library."},
  {"GetSelfId", "", from("getSelfUserId"), "Command Data Result", holds(), "Asks who is signed in.",
    expects(textOrNumber("UserId", "The user's id.")), MessageWay::ownConnection},
  {"GetMarketResPath", "", from("GetResPath"), "Command Data Result",
    holds(text("ResId", "Identifier of the module.")), "Asks where the file of a module is.",
    expects(textOrNumber("ResId", "The identifier that was asked for."),
            optional(text("DatPath", "Full path of the module file; needed when \"Result\" is 0."))),
    MessageWay::ownConnection},
};
// clang-format on
static_assert(longestFills(messages, &MessageRow::senders), "too much room");
static_assert(longestFills(messages, &MessageRow::data), "too much room");
static_assert(longestFills(messages, &MessageRow::answer), "too much room");

}  // namespace

std::span<const MessageRow> messageTable() {
  return messages;
}

}  // namespace vernoxa::plugin
