#include "sharing/library_files.h"

#include <algorithm>
#include <cctype>

#include "core/files.h"
#include "core/log.h"
#include "core/services.h"
#include "core/text.h"
#include "core/world.h"

namespace vernoxa {
namespace {

std::string moduleFolder(const PlacementContext& placement) {
  const std::string path = replaceInCodePage(placement.dsnDatPath, '\\', "/");
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

std::string libraryPath(const PlacementContext& placement, const std::string& name) {
  return moduleFolder(placement) + "/" + name;
}

// Windows takes both separators and either case for the same file.
std::string comparable(const std::string& path) {
  std::string text = replaceInCodePage(path, '\\', "/");
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
  return text;
}

bool isUsersOwn(const PlacementContext& placement, const std::string& path) {
  const std::string file = comparable(path);
  const std::string extension = extensionOf(file).value_or("");
  if (extension == "dsn" || extension == "opj") {
    return true;
  }
  const bool library = extension == "olb" || extension == "obk";
  return library && placement.madeLibraries.count(file) == 0;
}

}  // namespace

std::string temporaryLibraryPath(const PlacementContext& placement) {
  return libraryPath(placement, placement.libraryBaseName + ".olb");
}

std::string newLibraryPath(const PlacementContext& placement) {
  return libraryPath(placement, placement.backupBaseName + ".olb");
}

std::string libraryBackupPath(const PlacementContext& placement) {
  return libraryPath(placement, placement.libraryBaseName + "_0.OBK");
}

void noteMadeLibrary(PlacementContext& placement, const std::string& path) {
  const std::string file = comparable(path);
  placement.madeLibraries.insert(file);
  placement.madeLibraries.insert(file.substr(0, file.rfind('.')) + "_0.obk");
}

void removePlacementFile(Services& services, const std::string& path) {
  if (!services.world.files.exists(path)) {
    return;
  }
  if (isUsersOwn(services.state.placement, path)) {
    services.logs.openTraffic().writeLine("not removed: " + path);
    return;
  }
  services.world.files.removeFile(path);
}

}  // namespace vernoxa
