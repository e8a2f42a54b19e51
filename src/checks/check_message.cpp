#include "checks/check_message.h"

#include <algorithm>
#include <array>

#include "text/gbk_literal.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::checks {
namespace {

using enum ActualValue;

constexpr std::array referenceKinds = {
    FindingKind{"NoRefNum", first, true, u8"器件未编号"_gbk},
    FindingKind{"RefRepe", second, true, u8"位号重名"_gbk},
};

constexpr std::array illegalCharacterKinds = {
    FindingKind{"", second, true, u8"属性包含非法字符"_gbk},
};

constexpr std::array unconnectedPinKinds = {
    FindingKind{"", firstDotSecond, false, u8"引脚未连接"_gbk},
};

constexpr std::array netlistKinds = {
    FindingKind{"NoFootprint", first, true, u8"器件无封装"_gbk},
    FindingKind{"FootprintDiff", first, true, u8"器件存在多个封装"_gbk},
    FindingKind{"NoPinNumber", firstDotSecond, true, u8"引脚未编号"_gbk},
    FindingKind{"RepePinName", firstDotSecond, true, u8"引脚名重复"_gbk},
    FindingKind{"RepePinNum", firstDotSecond, true, u8"引脚编号重复"_gbk},
    FindingKind{"ValueDiff", secondInParentheses, true, u8"同一器件Value值不同"_gbk},
};

std::string actualValue(const FindingKind& kind, const Finding& finding) {
  std::string one(finding.first);
  std::string two(finding.second);
  switch (kind.actual) {
    case first:
      return one;
    case second:
      return two;
    case firstDotSecond:
      return one + "." + two;
    case secondInParentheses:
      return one + "(" + two + ")";
  }
  return {};
}

struct PlaceName {
  std::string text;
  bool inCodePage;
};

PlaceName placeName(std::string_view name, const TextConverter& converter) {
  const bool kept = looksLikeUtf8Chinese(name);
  return {kept ? std::string(name) : converter.utf8ToAnsi(name), !kept};
}

std::string pageName(std::string_view name, const TextConverter& converter) {
  constexpr std::string_view backslashMark = "[;fanxiegan;]";
  const PlaceName page = placeName(name, converter);
  return page.inCodePage ? converter.replaceInCodePage(page.text, '\\', backslashMark)
                         : replaceAll(page.text, "\\", backslashMark);
}

}  // namespace

const DesignCheck referenceCheck{"1001", referenceKinds};
const DesignCheck illegalCharacterCheck{"1002", illegalCharacterKinds};
const DesignCheck unconnectedPinCheck{"1003", unconnectedPinKinds};
const DesignCheck netlistCheck{"1004", netlistKinds};

std::optional<std::string> findingMessage(const DesignCheck& check, const Finding& finding,
                                          const TextConverter& converter) {
  const auto kind = std::find_if(check.kinds.begin(), check.kinds.end(),
                                 [&](const FindingKind& each) { return each.name == finding.kind; });
  if (kind == check.kinds.end()) {
    return std::nullopt;
  }
  std::string message = "{\"Command\":\"DsnCheck_Result\",\"Data\":{\"id\":\"";
  message.append(check.id).append("\",\"RequiredValue\":\"\",\"ActualValue\":\"").append(actualValue(*kind, finding));
  message.append("\",\"Comment\":\"");
  message.append(kind->commentNamesFirst ? finding.first : std::string_view()).append(kind->comment);
  message.append("\",\"PagePos\":\"").append(finding.x).append(" ").append(finding.y);
  message.append("\",\"PageName\":\"").append(pageName(finding.page, converter));
  message.append("\",\"ViewBox\":\"\",\"Sch\":\"").append(placeName(finding.schematic, converter).text);
  return message.append("\"},\"Result\":\"0\",\"ErrInfo\":\"\"}");
}

std::string checkEndMessage(const DesignCheck& check) {
  return std::string("{\"Command\":\"DsnCheck_EndResult\",\"Data\":{\"id\":\"")
      .append(check.id)
      .append("\"},\"Result\":\"0\",\"ErrInfo\":\"\"}");
}

}  // namespace vernoxa::checks
