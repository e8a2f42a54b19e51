// The package reports: the properties of a design's or library's parts as replies to the companion.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vernoxa::checks {

struct PackageReport {
  std::string_view reply;                     // the reply's "Command"
  std::span<const std::string_view> leftOut;  // properties that the host counts as its own
  bool doublesBackslashes;  // keeps paths valid JSON; one report has never done so, and its readers rely on that
};

extern const PackageReport designReport;
extern const PackageReport libraryObjectReport;
extern const PackageReport libraryReport;

// Builds the reply of one report from its properties, in their order, UTF-8. Values are not escaped: a double quote in
// one makes the reply invalid JSON.
class PackageReportText {
 public:
  explicit PackageReportText(const PackageReport& report);

  // A comma follows every property but the last of the host's list. So if the last one is left out, the report ends in
  // a comma; its readers know that.
  void add(std::string_view name, std::string_view value, bool lastOfList);

  // UTF-8.
  std::string finished() const { return text_ + "}]}}"; }

 private:
  void addText(std::string_view text);

  const PackageReport& report_;
  std::string text_;
};

}  // namespace vernoxa::checks
