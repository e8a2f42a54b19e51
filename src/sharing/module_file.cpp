#include "sharing/module_file.h"

#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "core/files.h"
#include "core/text.h"

namespace vernoxa {
namespace {

constexpr double farthest = 1e9;  // no page is wider in any unit

std::optional<double> decimal(const std::string& text) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, value, std::chars_format::fixed);
  if (parsed.ec != std::errc() || parsed.ptr != end || !(std::fabs(value) <= farthest)) {
    return std::nullopt;
  }
  return value;
}

// Ten digits: enough for every coordinate, too few to show that binary fractions are not decimal ones.
std::string decimalText(double value) {
  std::array<char, 32> buffer{};
  const auto printed = std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::general, 10);
  return {buffer.data(), printed.ptr};
}

}  // namespace

ModuleFile ModuleFile::read(Files& files, const std::string& path) {
  ModuleFile module;
  if (const auto text = files.read(path)) {
    module.root_ = Json::parse(*text).document;
  }
  return module;
}

std::string_view ModuleFile::firstPartName() const {
  for (const JsonView entry : library()) {
    return nameOf(entry);
  }
  return {};
}

std::optional<ViewBox> ModuleFile::viewBox() const {
  const std::vector<std::string> pieces = splitItems(textOf(root_.view(), "BoundingBox"), ' ');
  std::vector<double> values;
  for (const std::string& piece : pieces) {
    const auto value = decimal(piece);
    if (!value) {
      return std::nullopt;
    }
    values.push_back(*value);
  }
  if (values.size() == 2) {
    return ViewBox{pieces[0], pieces[1]};
  }
  if (values.size() == 4) {
    return ViewBox{decimalText(values[2] - values[0]), decimalText(values[3] - values[1])};
  }
  return std::nullopt;
}

std::string_view textOf(JsonView object, std::string_view member) {
  return object.member(member).text().value_or(std::string_view());
}

std::string_view nameOf(JsonView object) {
  const auto name = object.member("Name").text();
  return name ? *name : textOf(object, "name");
}

}  // namespace vernoxa
