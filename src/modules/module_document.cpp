#include "modules/module_document.h"

#include <algorithm>

#include "drawing/shapes.h"
#include "text/text.h"

namespace vernoxa::modules {
namespace {

constexpr std::size_t longestName = 31;  // characters of a part name that the host's libraries keep

std::string firstCharacters(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  for (std::size_t characters = 0; end < text.size(); ++end) {
    const bool starts = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
    if (starts && ++characters > count) {
      break;
    }
  }
  return std::string(text.substr(0, end));
}

std::string joined(const drawing::Record& record, std::size_t first, std::size_t count) {
  std::string text(record[first]);
  for (std::size_t index = first + 1; index < first + count; ++index) {
    text.append(" ").append(record[index]);
  }
  return text;
}

std::string withoutAt(std::string_view value) {
  return replaceAll(value, "@", "_");
}

Json dataOf(const drawing::Shape& shape, const drawing::Record& record) {
  Json data = Json::object();
  for (const drawing::ShapeMember& member : shape.members) {
    data.add(member.name, member.valueOf(record));
  }
  return data;
}

// Where the position comes in a displayed property.
enum class StartPlace { third, last };

Json displayedProperty(const drawing::Record& record, StartPlace startPlace) {
  Json property = Json::object();
  property.add("Name", record[3]);
  property.add("Value", withoutAt(record[4]));
  if (startPlace == StartPlace::third) {
    property.add("Start", joined(record, 1, 2));
  }
  property.add("Color", record[5]);
  property.add("Rotation", record[8]);
  property.add("FontId", record[6]);
  property.add("Size", record[7]);
  if (startPlace == StartPlace::last) {
    property.add("Start", joined(record, 1, 2));
  }
  return property;
}

}  // namespace

void ModuleDocument::start() {
  root_ = {};
  Json root = Json::object();
  children_ = root.add("children", Json::array());
  library_ = root.add("lib", Json::array());
  root_ = std::move(root);
  partKeys_.clear();
  part_ = {};
  object_ = {};
}

std::string ModuleDocument::finish(std::string_view width, std::string_view height) {
  Json root = std::move(root_);
  part_ = {};
  object_ = {};
  if (!root) {
    return {};
  }
  root.add("BoundingBox", std::string(width).append(" ").append(height));
  return root.printFormatted();
}

void ModuleDocument::startPart(const drawing::Record& record) {
  const bool isPart = record[2] == "Part";
  const std::string name = firstCharacters(record[1], longestName);
  const std::string index(isPart ? record[7] : std::string_view());
  const std::string type(record[2]);
  part_ = {};
  // Lengths first, so that no two parts share a key.
  const std::string key = std::to_string(name.size()) + " " + std::to_string(index.size()) + " " + name + index + type;
  if (partKeys_.contains(key)) {
    return;
  }
  Json part = Json::object();
  part.add("Name", name);
  part.add("PartIndex", index);
  part.add("Designator", isPart ? record[8] : std::string_view());
  part.add("Type", type);
  part.add("BoundingBox", joined(record, 3, 4));
  Current current;
  current.properties = part.add("Property", Json::object());
  current.displayedProperties = part.add("DispProperty", Json::array());
  current.children = part.add("children", Json::array());
  partKeys_.insert(key);  // only now: if memory ran out before, the host's next try must not count as a duplicate
  root_.appendTo(library_, std::move(part));
  part_ = current;  // now that it belongs to the document
}

void ModuleDocument::addProperty(JsonView properties, const drawing::Record& record) {
  if (properties) {
    root_.set(properties, record[1], withoutAt(drawing::lookNamed("unless-placeholder").of(record[2])));
  }
}

void ModuleDocument::addLibraryRecord(const drawing::Record& record) {
  const std::string_view kind = record[0];
  if (!root_) {
    return;
  }
  if (kind == "Name") {
    startPart(record);
    return;
  }
  if (!part_.children) {
    return;
  }
  if (kind == "DispProperty") {
    root_.appendTo(part_.displayedProperties, displayedProperty(record, StartPlace::third));
  } else if (kind == "PartProperty") {
    addProperty(part_.properties, record);
  } else if (kind == "Property") {
    addProperty(part_.elementProperties, record);
  } else if (const drawing::Shape* const shape = drawing::shapeOf(drawing::Use::modulePart, kind)) {
    Json added = Json::object();
    added.add("Name", shape->name);
    part_.elementProperties = {};
    const JsonView properties = added.add("Property", Json::object());
    added.add("Data", dataOf(*shape, record));
    root_.appendTo(part_.children, std::move(added));
    part_.elementProperties = properties;
  }
}

void ModuleDocument::addSchematicRecord(const drawing::Record& record) {
  const std::string_view kind = record[0];
  if (!root_) {
    return;
  }
  if (kind == "Property") {
    addProperty(object_.properties, record);
  } else if (kind == "DispProperty") {
    if (object_.displayedProperties) {
      root_.appendTo(object_.displayedProperties, displayedProperty(record, StartPlace::last));
    }
  } else if (const drawing::Shape* const shape = drawing::shapeOf(drawing::Use::moduleObject, kind)) {
    Json object = Json::object();
    object_ = {};
    object.add("name", shape->name);
    Current current;
    if (kind != "Junction") {
      current.properties = object.add("Property", Json::object());
      current.displayedProperties = object.add("DispProperty", Json::array());
    }
    object.add("Data", dataOf(*shape, record));
    root_.appendTo(children_, std::move(object));
    object_ = current;
  }
}

}  // namespace vernoxa::modules
