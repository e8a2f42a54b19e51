#include "text/text_converter.h"

#include <exception>

#include "system/user_messages.h"
#include "text/text.h"

namespace vernoxa::inline text {
namespace {

std::string_view upToNul(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

}  // namespace

std::string TextConverter::ansiToUtf8(std::string_view ansi) const {
  const std::string_view text = upToNul(ansi);
  try {
    return isAscii(text) ? std::string(text) : codePage_.toUtf8(text);
  } catch (const std::exception&) {
    messages_.show(u8"GBK格式异常", MessageIcon::none);
    return {};
  }
}

std::string TextConverter::utf8ToAnsi(std::string_view utf8) const {
  const std::string_view text = upToNul(utf8);
  if (isAscii(text)) {
    return std::string(text);
  }
  const auto plain = utf8OfTcl(text);
  return plain ? codePage_.fromUtf8(*plain) : std::string(text);
}

std::string TextConverter::messageText(std::string_view hostText) const {
  return looksLikeUtf8Chinese(hostText) ? utf8ToAnsi(hostText) : std::string(hostText);
}

std::string TextConverter::scriptValue(std::string_view packetValue) const {
  return isUtf8WithThreeByteSequence(packetValue) ? std::string(packetValue) : ansiToUtf8(packetValue);
}

std::string TextConverter::hostPath(std::string_view path) const {
  return utf8OfTcl(path) ? std::string(path) : ansiToUtf8(path);
}

FilePath TextConverter::path(std::string_view packetPath) const {
  return FilePath::fromUtf8(scriptValue(packetPath));
}

std::string TextConverter::trueName(std::string_view hostName) const {
  const auto plain = utf8OfTcl(hostName);
  return plain ? *plain : ansiToUtf8(hostName);
}

std::optional<std::string> TextConverter::nameInCodePage(const FilePath& path) const {
  return isAscii(path.utf8()) ? path.utf8() : codePage_.nameFromUtf8(path.utf8());
}

std::string TextConverter::replaceInCodePage(std::string_view text, char character, std::string_view to) const {
  std::string result;
  result.reserve(text.size());
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (codePage_.isLeadByte(text[index])) {
      result.append(text, index++, 2);  // at the end only the half that is there
    } else if (text[index] == character) {
      result.append(to);
    } else {
      result.push_back(text[index]);
    }
  }
  return result;
}

std::string TextConverter::doubledBackslashes(std::string_view packetPath) const {
  return isUtf8WithThreeByteSequence(packetPath) ? doubleBackslashes(packetPath)
                                                 : replaceInCodePage(packetPath, '\\', "\\\\");
}

}  // namespace vernoxa::inline text
