#include "export/cache_folders.h"

#include <chrono>

#include "core/clock.h"
#include "core/files.h"

namespace vernoxa {
namespace {

// Windows finishes the removal of a folder only after its last watcher let it go.
constexpr std::chrono::milliseconds removalTime{200};

std::string makeFolder(Files& files, const std::string& baseDirectory, const char* name) {
  const std::string cache = baseDirectory + "\\Cache";
  std::string folder = cache + name;
  files.createFolder(cache);
  files.createFolder(folder);
  return folder;
}

void removeTree(Files& files, const std::string& folder, std::uint32_t attributes) {
  if ((attributes & reparsePointAttribute) == 0) {
    for (const FolderEntry& entry : files.entries(folder)) {
      const std::string path = folder + "\\" + entry.name;
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

std::string makeOutputFolder(Files& files, const std::string& baseDirectory) {
  return makeFolder(files, baseDirectory, "\\Output");
}

std::string makeLibraryFolder(Files& files, const std::string& baseDirectory) {
  return makeFolder(files, baseDirectory, "\\Library");
}

void renewOutputFolder(Files& files, Clock& clock, const std::string& baseDirectory) {
  const std::string folder = baseDirectory + "\\Cache\\Output";
  if (const std::uint32_t attributes = files.attributes(folder); attributes != noAttributes) {
    removeTree(files, folder, attributes);
    clock.sleep(removalTime);
  }
  files.createFolder(folder);
}

}  // namespace vernoxa
