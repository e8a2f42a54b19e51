#include "system/file_path.h"

namespace vernoxa::inline system {

FilePath FilePath::fromUtf8(std::string_view text) {
  return FilePath(std::string(text.substr(0, text.find('\0'))));
}

FilePath FilePath::operator/(std::string_view utf8Name) const {
  return FilePath(std::string(utf8_).append("\\").append(utf8Name));
}

FilePath FilePath::folder() const {
  return FilePath(utf8_.substr(0, utf8_.rfind('\\')));
}

}  // namespace vernoxa::inline system
