#include "sharing/library_files.h"

#include <algorithm>
#include <array>

#include "core/files.h"
#include "core/log.h"
#include "core/random.h"
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

// One text for all spellings of a file; empty for what is no path. Code page: the second byte of a double-byte
// character has no case.
std::string comparable(Files& files, const std::string& path) {
  std::string text = replaceInCodePage(files.fullPath(path), '\\', "/");
  text.erase(text.find_last_not_of("./ ") + 1);
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (isDoubleByteLead(text[index])) {
      ++index;
    } else if (text[index] >= 'A' && text[index] <= 'Z') {
      text[index] = static_cast<char>(text[index] - 'A' + 'a');
    }
  }
  return text;
}

bool isUsersOwn(const GlobalState& state, const std::string& file) {
  const std::string extension = extensionOf(file).value_or("");
  // Behind the drive's, which may stand behind "//?/", a colon begins another name for a file that has one already.
  const std::size_t drive = file.starts_with("//?/") || file.starts_with("//./") ? 6 : 2;
  const bool stream = file.find(':', drive) != std::string::npos;
  if (file.empty() || extension == "dsn" || extension == "opj" || stream) {
    return true;
  }
  const bool library = extension == "olb" || extension == "obk";
  return library && state.madeLibraries.count(file) == 0;
}

// As the editor keeps a library's files; a lock alone tells of a library that is being made.
constexpr std::array<const char*, 3> libraryEndings = {".OLBlck", ".olb", "_0.OBK"};

// A base name that is free in the module's folder and not `taken`; empty when the numbers drawn are all in use.
std::string freeName(Services& services, const std::string& taken) {
  constexpr int mostDraws = 10000;
  for (int draw = 0; draw < mostDraws; ++draw) {
    std::string name = std::to_string(services.world.random.next());
    const bool used = std::any_of(libraryEndings.begin(), libraryEndings.end(), [&](const char* ending) {
      return services.world.files.exists(libraryPath(services.state.placement, name + ending));
    });
    if (!used && name != taken) {
      return name;
    }
  }
  return {};
}

}  // namespace

bool drawLibraryNames(Services& services) {
  const std::string temporary = freeName(services, "");
  const std::string renewed = freeName(services, temporary);
  if (temporary.empty() || renewed.empty()) {
    services.logs.openTraffic().writeLine("no free library name");
    return false;
  }
  services.state.placement.libraryBaseName = temporary;
  services.state.placement.backupBaseName = renewed;
  return true;
}

std::string emptyLibraryPath(const Services& services) {
  for (const std::string& folder :
       {services.state.installDirectory, withoutLastComponent(services.state.link.hostInstallPath())}) {
    if (folder.empty()) {
      continue;  // would be the root of whichever drive is current
    }
    std::string path = folder + "\\config\\Resource\\Empty.olb";
    if (services.world.files.exists(path)) {
      return path;
    }
  }
  return {};
}

std::string temporaryLibraryPath(const PlacementContext& placement) {
  return libraryPath(placement, placement.libraryBaseName + ".olb");
}

std::string newLibraryPath(const PlacementContext& placement) {
  return libraryPath(placement, placement.backupBaseName + ".olb");
}

std::string libraryBackupPath(const PlacementContext& placement) {
  return libraryPath(placement, placement.libraryBaseName + "_0.OBK");
}

void noteMadeLibrary(Services& services, const std::string& path) {
  services.state.madeLibraries.insert(comparable(services.world.files, path));
}

bool makeLibrary(Services& services, const std::string& from, const std::string& to) {
  // Noted first: once it is there, nothing may fail any more that would keep it from being removed.
  const auto [note, added] = services.state.madeLibraries.insert(comparable(services.world.files, to));
  const bool made = services.world.files.copyFile(from, to);
  if (!made && added) {
    services.state.madeLibraries.erase(note);
  }
  return made;
}

void removePlacementFile(Services& services, const std::string& path) {
  if (!services.world.files.exists(path)) {
    return;
  }
  const std::string file = comparable(services.world.files, path);
  if (isUsersOwn(services.state, file)) {
    services.logs.openTraffic().writeLine("not removed: " + path);
    return;
  }
  if (services.world.files.removeFile(path)) {
    services.state.madeLibraries.erase(file);  // who makes it anew is another matter
  }
}

}  // namespace vernoxa
