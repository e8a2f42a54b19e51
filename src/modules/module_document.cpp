#include "modules/module_document.h"

#include <algorithm>

#include "modules/module_records.h"
#include "text/text.h"

namespace vernoxa {
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

std::string joined(const RecordElement& element, int first, int count) {
  std::string text(element(first));
  for (int index = first + 1; index < first + count; ++index) {
    text.append(" ").append(element(index));
  }
  return text;
}

bool isPlaceholder(std::string_view value) {
  return value.find('$') != std::string_view::npos;
}

std::string withoutPlaceholder(std::string_view value) {
  return isPlaceholder(value) ? std::string() : std::string(value);
}

std::string withoutAt(std::string_view value) {
  return replaceAll(value, "@", "_");
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isSign(char c) {
  return c == '-' || c == '+';
}

// The number that the text begins with, an exponent included; empty where none begins.
std::string_view numberAtStart(std::string_view text) {
  std::size_t end = !text.empty() && isSign(text[0]) ? 1 : 0;
  bool number = false;  // a sign and a point are none
  for (; end < text.size() && (isDigit(text[end]) || text[end] == '.'); ++end) {
    number = number || isDigit(text[end]);
  }
  if (!number) {
    return {};
  }
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    const std::size_t digits = end + (end + 1 < text.size() && isSign(text[end + 1]) ? 2 : 1);
    if (digits < text.size() && isDigit(text[digits])) {
      end = std::min(text.find_first_not_of("0123456789", digits), text.size());
    }
  }
  return text.substr(0, end);
}

// The first two numbers of a point list ("10,20 30,40") or path data ("M 10 20 L 30 40"), joined by a space.
std::string startOfPath(std::string_view path) {
  std::string start;
  for (int numbers = 0; !path.empty() && numbers < 2;) {
    const std::string_view number = numberAtStart(path);
    if (!number.empty()) {
      start.append(numbers++ == 0 ? "" : " ").append(number);
    }
    path.remove_prefix(std::max<std::size_t>(number.size(), 1));
  }
  return start;
}

std::string memberValue(const RecordMember& member, const RecordElement& element) {
  switch (member.rule) {
    case MemberRule::joined:
      return joined(element, member.first, member.count);
    case MemberRule::placeholder:
      return withoutPlaceholder(element(member.first));
    case MemberRule::pathStart:
      return startOfPath(element(member.first));
  }
  return {};
}

Json dataOf(const RecordKind& kind, const RecordElement& element) {
  Json data = Json::object();
  for (const RecordMember& member : kind.members) {
    if (member.key != nullptr) {
      data.add(member.key, memberValue(member, element));
    }
  }
  return data;
}

// Where in a displayed property its position stands.
enum class StartPlace { third, last };

Json displayedProperty(const RecordElement& element, StartPlace startPlace) {
  Json property = Json::object();
  property.add("Name", element(3));
  property.add("Value", withoutAt(element(4)));
  if (startPlace == StartPlace::third) {
    property.add("Start", joined(element, 1, 2));
  }
  property.add("Color", element(5));
  property.add("Rotation", element(8));
  property.add("FontId", element(6));
  property.add("Size", element(7));
  if (startPlace == StartPlace::last) {
    property.add("Start", joined(element, 1, 2));
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

void ModuleDocument::startPart(const RecordElement& element) {
  const bool isPart = element(2) == "Part";
  const std::string name = firstCharacters(element(1), longestName);
  const std::string index(isPart ? element(7) : std::string_view());
  const std::string type(element(2));
  part_ = {};
  // Lengths first, so that no two parts share a key.
  const std::string key = std::to_string(name.size()) + " " + std::to_string(index.size()) + " " + name + index + type;
  if (partKeys_.contains(key)) {
    return;
  }
  Json part = Json::object();
  part.add("Name", name);
  part.add("PartIndex", index);
  part.add("Designator", isPart ? element(8) : std::string_view());
  part.add("Type", type);
  part.add("BoundingBox", joined(element, 3, 4));
  Current current;
  current.properties = part.add("Property", Json::object());
  current.displayedProperties = part.add("DispProperty", Json::array());
  current.children = part.add("children", Json::array());
  partKeys_.insert(key);  // now that the part is whole: when memory runs out before, the host's next try is no double
  root_.appendTo(library_, std::move(part));
  part_ = current;  // only what stands in the document may be written to
}

void ModuleDocument::addProperty(JsonView properties, const RecordElement& element) {
  if (properties) {
    root_.set(properties, element(1), withoutAt(withoutPlaceholder(element(2))));
  }
}

void ModuleDocument::addLibraryRecord(const RecordElement& element) {
  const std::string_view kind = element(0);
  if (!root_) {
    return;
  }
  if (kind == "Name") {
    startPart(element);
    return;
  }
  if (!part_.children) {
    return;
  }
  if (kind == "DispProperty") {
    root_.appendTo(part_.displayedProperties, displayedProperty(element, StartPlace::third));
  } else if (kind == "PartProperty") {
    addProperty(part_.properties, element);
  } else if (kind == "Property") {
    addProperty(part_.elementProperties, element);
  } else if (const RecordKind* const row = libraryElementKind(kind)) {
    Json added = Json::object();
    added.add("Name", row->written);
    part_.elementProperties = {};
    const JsonView properties = added.add("Property", Json::object());
    added.add("Data", dataOf(*row, element));
    root_.appendTo(part_.children, std::move(added));
    part_.elementProperties = properties;
  }
}

void ModuleDocument::addSchematicRecord(const RecordElement& element) {
  const std::string_view kind = element(0);
  if (!root_) {
    return;
  }
  if (kind == "Property") {
    addProperty(object_.properties, element);
  } else if (kind == "DispProperty") {
    if (object_.displayedProperties) {
      root_.appendTo(object_.displayedProperties, displayedProperty(element, StartPlace::last));
    }
  } else if (const RecordKind* const row = schematicObjectKind(kind)) {
    Json object = Json::object();
    object_ = {};
    object.add("name", row->written);
    Current current;
    if (row->hasProperties) {
      current.properties = object.add("Property", Json::object());
      current.displayedProperties = object.add("DispProperty", Json::array());
    }
    object.add("Data", dataOf(*row, element));
    root_.appendTo(children_, std::move(object));
    object_ = current;
  }
}

}  // namespace vernoxa
