#include "modules/module_file.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "system/files.h"
#include "system/log.h"
#include "text/decimal.h"
#include "text/outside_json.h"
#include "text/text.h"

namespace vernoxa::modules {
namespace {

// Each becomes a script for the host, which more of them would keep busy for hours. The largest valid module has a
// sixth of this.
constexpr std::size_t mostItems = 250'000;

// No page is wider than this in any unit.
constexpr std::int64_t farthest = 1'000'000'000;

std::optional<Decimal> coordinate(const std::string& text) {
  const auto value = Decimal::of(text);
  return value && *value <= Decimal::whole(farthest) && *value >= Decimal::whole(-farthest) ? value : std::nullopt;
}

}  // namespace

ModuleFile ModuleFile::read(Files& files, const Logs& logs, const FilePath& path) {
  ModuleFile module;
  if (const auto text = files.readStart(path, longestOutsideJson + 1)) {
    module.root_ = parseOutsideJson(*text, logs);
    if (std::max(module.library().size(), module.objects().size()) > mostItems) {
      logs.openTraffic().writeLine("module refused: more than 250000 parts or objects");
      module.root_ = {};
    }
  }
  return module;
}

std::string_view ModuleFile::firstPartName() const {
  for (const JsonView entry : library()) {
    if (entry.isObject()) {
      return nameOf(entry);
    }
  }
  return {};
}

std::optional<ViewBox> ModuleFile::viewBox() const {
  const std::vector<std::string> pieces = splitItems(textOf(root_.view(), "BoundingBox"), ' ');
  std::vector<Decimal> values;
  for (const std::string& piece : pieces) {
    const auto value = coordinate(piece);
    if (!value) {
      return std::nullopt;
    }
    values.push_back(*value);
  }
  if (values.size() == 2) {
    return ViewBox{pieces[0], pieces[1]};
  }
  if (values.size() == 4) {
    return ViewBox{(values[2] - values[0]).text(), (values[3] - values[1]).text()};
  }
  return std::nullopt;
}

std::string_view textOf(JsonView object, std::string_view member) {
  return object.member(member).text().value_or(std::string_view());
}

JsonView objectIn(JsonView object, std::string_view member) {
  const JsonView value = object.member(member);
  return value.isObject() ? value : JsonView();
}

JsonView arrayIn(JsonView object, std::string_view member) {
  const JsonView value = object.member(member);
  return value.isArray() ? value : JsonView();
}

std::string_view nameOf(JsonView object) {
  const auto name = object.member("Name").text();
  return name ? *name : textOf(object, "name");
}

}  // namespace vernoxa::modules
