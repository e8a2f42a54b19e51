#include "modules/placement_scripts.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "modules/list_text.h"
#include "modules/placement_context.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::modules {
namespace {

// The host's own properties of a part. A shared module may set no others on a placed object, unless the designator is
// "1": then the module is the user's own.
constexpr std::array<std::string_view, 28> hostProperties = {
    "PCB Footprint",
    "Name",
    "Part Reference",
    "Reference",
    "Part Number",
    "Part Name",
    "Part Type",
    "Value",
    "Primitive",
    "Implementation Type",
    "Implementation",
    "Implementation Path",
    "Color",
    "Power Pins Visible",
    "Graphic",
    "Net Name",
    "Rotation",
    "Font",
    "NODENAME",
    "PSpiceOnly",
    "Connected Net name",
    "Type",
    "Text",
    "Line Style",
    "Line Width",
    "Fill Style",
    "Hatch Style",
    "IREF",
};

bool isHostProperty(std::string_view name) {
  return std::find(hostProperties.begin(), hostProperties.end(), name) != hostProperties.end();
}

// How the points of a "path" member are written.
enum class PointForm { asItStands, spaceBetween };

std::vector<std::string> pointsOf(std::string_view path, PointForm form) {
  std::vector<std::string> pieces = splitItems(path, ' ');
  if (form == PointForm::asItStands) {
    return pieces;
  }
  std::vector<std::string> points;
  std::string x;  // of a point whose coordinates are two pieces
  for (const std::string& piece : pieces) {
    if (piece.find(',') != std::string::npos) {
      points.push_back(replaceAll(piece, ",", " "));
    } else if (x.empty()) {
      x = piece;
    } else {
      points.push_back(x.append(" ").append(piece));
      x.clear();
    }
  }
  return points;
}

enum class Properties { all, ofHost };

void addItems(ListText& list, JsonView object, Properties which = Properties::all) {
  for (const JsonView member : object) {
    const auto value = member.text();
    if (value && (which == Properties::all || isHostProperty(member.name()))) {
      list.literal(" ").item(member.name(), *value);
    }
  }
}

void addDataList(ListText& list, JsonView data, PointForm form) {
  list.literal("[list");
  for (const JsonView member : data) {
    const auto value = member.text();
    if (value && member.name() == "path") {
      for (const std::string& point : pointsOf(*value, form)) {
        list.literal(" ").item("NewPoint", point);
      }
    } else if (value) {
      list.literal(" ").item(member.name(), *value);
    }
  }
  list.literal("]");
}

void addPropertyList(ListText& list, JsonView properties) {
  list.literal("[list");
  addItems(list, properties);
  list.literal("]");
}

// The members of all displayed properties, one after the other.
void addDisplayedList(ListText& list, JsonView displayed) {
  list.literal("[list");
  for (const JsonView property : displayed) {
    if (property.isObject()) {
      addItems(list, property);
    }
  }
  list.literal("]");
}

void addGraphicList(ListText& list, JsonView elements) {
  list.literal("[list");
  for (const JsonView element : elements) {
    if (element.isObject()) {
      list.literal(" [list ").quoted(nameOf(element)).literal(" ");
      addDataList(list, objectIn(element, "Data"), PointForm::asItStands);
      list.literal(" ");
      addPropertyList(list, objectIn(element, "Property"));
      list.literal("]");
    }
  }
  list.literal("]");
}

}  // namespace

Script libraryPartScript(std::string_view libraryPath, JsonView entry) {
  constexpr Literal none = "[list \"\"]";
  ListText list("placeLibPart ");
  list.bare(libraryPath).literal(" ").braced(nameOf(entry)).literal(" ");
  list.bareOr(textOf(entry, "PartIndex"), none).literal(" ").bareOr(textOf(entry, "Type"), none);
  list.literal(" [list ").bare(textOf(entry, "BoundingBox")).literal("] ");
  addPropertyList(list, objectIn(entry, "Property"));
  list.literal(" ");
  addGraphicList(list, arrayIn(entry, "children"));
  list.literal(" ");
  addDisplayedList(list, arrayIn(entry, "DispProperty"));
  return list.literal(" ").bareOr(textOf(entry, "Designator"), none).script();
}

Script viewBoxPartScript(std::string_view libraryPath, const ViewBox& box) {
  const std::string size = box.width + " " + box.height;
  ListText list("placeLibPart ");
  list.bare(libraryPath).literal(" {ViewBox} 0 ViewBox [list 0 0 ").bare(size);
  list.literal(
      "] [list [list \"\" \"\"]] [list [list \"Box\" [list [list \"UpperLeft\" \"0 0\"] [list \"LowerRight\" ");
  return list.quoted(size).literal("]] [list [list \"\" \"\"]]]] [list [list \"\" \"\"]] [list \"\"]").script();
}

Script schematicObjectScript(JsonView object, const PlacementContext& placement, const TextConverter& converter) {
  const std::string_view name = nameOf(object);
  const Properties allowed = placement.selfModule == "1" ? Properties::all : Properties::ofHost;
  ListText list("placePart ");
  list.bareOr(name, "{}").literal(" ").bareOr(converter.scriptValue(placement.selfModule), "{}").literal(" [list");
  addItems(list, objectIn(object, "Property"), allowed);
  list.literal(" ").item("NimbMarket", name);
  list.literal(" ").item("MarketResID", converter.scriptValue(placement.uploadResId));
  list.literal(" ").item("MarketUserID", converter.scriptValue(placement.uploadUserId));
  addItems(list, objectIn(object, "UserProperty"), allowed);
  list.literal("] ");
  addDataList(list, objectIn(object, "Data"), PointForm::spaceBetween);
  list.literal(" ");
  addDisplayedList(list, arrayIn(object, "DispProperty"));
  return list.script();
}

Script cataloguePartScript(Literal mode, std::string_view package, const PlacementContext& placement,
                           const TextConverter& converter) {
  const auto value = [&](const std::string& stateText) { return converter.scriptValue(stateText); };
  const std::string designator = value(placement.selfModule);
  ListText list("placePart ");
  list.literal(mode).literal(" -1 [list [list Location \"10 10\"] [list Rotation 0] [list Mirror 0] [list Package ");
  list.bare(package).literal("] [list PartIndex ").bare(value(placement.PartIndex));
  list.literal("] [list Designator ").quoted(designator).literal("]]");
  list.literal(" [list [list \"PCB Footprint\" ").bare(value(placement.packageName));
  list.literal("] [list \"Part Number\" ").bare(value(placement.PartNumber));
  list.literal("] [list \"Part Name\" ").bare(value(placement.PartName));
  // The host numbers the part again.
  list.literal("] [list \"Part Reference\" ").bare(value(placement.prefix) + "1" + designator);
  return list.literal("] [list \"Value\" ").quoted(value(placement.value)).literal("]] [list]").script();
}

}  // namespace vernoxa::modules
