#include "text/outside_json.h"

#include <algorithm>

#include "system/log.h"

namespace vernoxa::inline text {
namespace {

struct StringScan {
  std::size_t end;  // the index behind the string; the text's size when it does not end
  std::size_t spaces = 0;
};

StringScan scanString(std::string_view text, std::size_t start) {
  std::size_t spaces = 0;
  for (std::size_t index = start + 1; index < text.size(); ++index) {
    if (text[index] == '"') {
      return {index + 1, spaces};
    }
    spaces += text[index] == ' ' ? 1U : 0U;
    index += text[index] == '\\' ? 1U : 0U;
  }
  return {text.size(), spaces};
}

// As the parser skips what stands before a value.
std::string_view fromFirstValue(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
  const auto first = std::find_if(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) > ' '; });
  return text.substr(static_cast<std::size_t>(first - text.begin()));
}

}  // namespace

std::string_view outsideJsonRefusal(std::string_view text, std::size_t mostValues) {
  text = text.substr(0, text.find('\0'));
  if (text.size() > longestOutsideJson) {
    return "longer than 32 MB";
  }
  text = fromFirstValue(text);
  std::size_t depth = 0;
  std::size_t values = 1;
  for (std::size_t index = 0; index < text.size();) {
    const char c = text[index];
    const StringScan string = c == '"' ? scanString(text, index) : StringScan{index + 1};
    index = string.end;
    values += string.spaces;
    if (c == '[' || c == '{') {
      ++values;
      ++depth;
    } else if (c == ',') {
      ++values;
    } else if ((c == ']' || c == '}') && depth > 0) {
      --depth;
    }
    if (depth == 0) {
      break;
    }
    if (depth > deepestOutsideJson) {
      return "nested deeper than 1000 levels";
    }
    if (values > mostValues) {
      return "too many values";
    }
  }
  return {};
}

bool isWithinBounds(std::string_view text, const Logs& logs) {
  const std::string_view refusal = outsideJsonRefusal(text);
  if (!refusal.empty()) {
    logs.openTraffic().writeLine(std::string("JSON refused: ").append(refusal));
  }
  return refusal.empty();
}

Json parseOutsideJson(const std::string& text, const Logs& logs) {
  return isWithinBounds(text, logs) ? Json::parse(text).document : Json();
}

}  // namespace vernoxa::inline text
