#include "drawing/cache_folders.h"

#include <chrono>

#include "system/clock.h"
#include "system/files.h"

namespace vernoxa {
namespace {

// Windows finishes the removal of a folder only after its last watcher let it go.
constexpr std::chrono::milliseconds removalTime{200};

FilePath makeFolder(Files& files, const FilePath& baseDirectory, const char* name) {
  const FilePath cache = baseDirectory / "Cache";
  FilePath folder = cache / name;
  files.createFolder(cache);
  files.createFolder(folder);
  return folder;
}

void removeTree(Files& files, const FilePath& folder, std::uint32_t attributes) {
  if (!files.isLink(folder, attributes)) {
    for (const FolderEntry& entry : files.entries(folder)) {
      const FilePath path = folder / entry.name;
      if ((entry.attributes & directoryAttribute) != 0) {
        removeTree(files, path, entry.attributes);
      } else {
        files.removeFile(path);
      }
    }
  }
  files.removeFolder(folder);
}

}  // namespace

FilePath makeOutputFolder(Files& files, const FilePath& baseDirectory) {
  return makeFolder(files, baseDirectory, "Output");
}

FilePath makeLibraryFolder(Files& files, const FilePath& baseDirectory) {
  return makeFolder(files, baseDirectory, "Library");
}

void renewOutputFolder(Files& files, Clock& clock, const FilePath& baseDirectory) {
  const FilePath folder = baseDirectory / "Cache" / "Output";
  if (const std::uint32_t attributes = files.attributes(folder); attributes != noAttributes) {
    removeTree(files, folder, attributes);
    clock.sleep(removalTime);
  }
  files.createFolder(folder);
}

}  // namespace vernoxa
