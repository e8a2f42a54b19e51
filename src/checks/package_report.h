// The package reports: the properties of a design's or library's parts as replies to the companion.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vernoxa::checks {

struct PackageReport {
  std::string_view reply;                     // the reply's "Command"
  std::span<const std::string_view> leftOut;  // properties that the host counts as its own
  bool doublesBackslashes;  // paths stay valid JSON; one report has never done so, and its reader knows
};

extern const PackageReport designReport;
extern const PackageReport libraryObjectReport;
extern const PackageReport libraryReport;

// Builds the reply of one report from its properties, in their order, UTF-8. The values stand in it as they come: a
// double quote in one makes it invalid JSON.
class PackageReportText {
 public:
  explicit PackageReportText(const PackageReport& report);

  // A comma follows every property that is not the last of the host's list, so a list that ends in a property that is
  // left out ends in a comma. Readers of the report know it.
  void add(std::string_view name, std::string_view value, bool lastOfList);

  // UTF-8.
  std::string finished() const { return text_ + "}]}}"; }

 private:
  void addText(std::string_view text);

  const PackageReport& report_;
  std::string text_;
};

}  // namespace vernoxa::checks
