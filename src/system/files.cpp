#include "system/files.h"

namespace vernoxa::inline system {

bool Files::isFolder(const FilePath& path) {
  const std::uint32_t found = attributes(path);
  return found != noAttributes && (found & directoryAttribute) != 0;
}

bool Files::isLink(const FilePath& path, std::uint32_t attributes) {
  constexpr std::uint32_t nameSurrogate = 0x20000000;  // IsReparseTagNameSurrogate in winnt.h
  if ((attributes & reparsePointAttribute) == 0) {
    return false;
  }
  const std::uint32_t tag = reparseTag(path);
  return tag == 0 || (tag & nameSurrogate) != 0;  // unknown: taken for a link
}

void Files::removeTree(const FilePath& folder, std::uint32_t attributes) {
  if (!isLink(folder, attributes)) {
    for (const FolderEntry& entry : entries(folder)) {
      const FilePath path = folder / entry.name;
      if ((entry.attributes & directoryAttribute) != 0) {
        removeTree(path, entry.attributes);
      } else {
        removeFile(path);
      }
    }
  }
  removeFolder(folder);
}

std::string withDosLineEnds(std::string_view text) {
  std::string lines;
  lines.reserve(text.size());
  for (const char character : text) {
    lines.append(character == '\n' ? "\r\n" : std::string_view(&character, 1));
  }
  return lines;
}

}  // namespace vernoxa::inline system
