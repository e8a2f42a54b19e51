#include "core/files.h"

#include "core/text.h"

namespace vernoxa {

bool Files::isFolder(const FilePath& path) {
  const std::uint32_t found = attributes(path);
  return found != noAttributes && (found & directoryAttribute) != 0;
}

std::string withDosLineEnds(std::string_view text) {
  return replaceAll(text, "\n", "\r\n");
}

}  // namespace vernoxa
