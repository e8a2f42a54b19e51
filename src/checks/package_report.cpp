#include "checks/package_report.h"

#include <algorithm>
#include <array>

#include "text/text.h"

namespace vernoxa::checks {
namespace {

constexpr std::array<std::string_view, 8> designNames = {
    "Name",      "ID",         "Implementation Type", "Implementation", "Implementation Path",
    "Reference", "Designator", "Part Reference",
};

constexpr std::array<std::string_view, 9> libraryNames = {
    "Name",
    "Pin Numbers Visible",
    "Implementation Type",
    "Implementation",
    "Implementation Path",
    "Pin Names Visible",
    "Pin Names Rotate",
    "Part Reference",
    "Reference",
};

}  // namespace

const PackageReport designReport{"GetDsnAllPackageInfo_EndResult", designNames, true};
const PackageReport libraryObjectReport{"GetOlbObjectPackageInfo_EndResult", libraryNames, false};
const PackageReport libraryReport{"GetOlbAllPackageInfo_EndResult", libraryNames, true};

PackageReportText::PackageReportText(const PackageReport& report) : report_(report) {
  text_.append("{\"Command\":\"").append(report.reply).append("\",\"Result\":\"0\",\"Data\":{\"item\":[{");
}

void PackageReportText::addText(std::string_view text) {
  text_.append(report_.doublesBackslashes ? doubleBackslashes(text) : std::string(text));
}

void PackageReportText::add(std::string_view name, std::string_view value, bool lastOfList) {
  if (std::find(report_.leftOut.begin(), report_.leftOut.end(), name) != report_.leftOut.end()) {
    return;
  }
  text_.append("\"");
  addText(name);
  text_.append("\":\"");
  addText(value);
  text_.append(lastOfList ? "\"" : "\",");
}

}  // namespace vernoxa::checks
