#include "modules/library_files.h"

#include <algorithm>
#include <array>

#include "dispatch/services.h"
#include "dispatch/state.h"
#include "system/files.h"
#include "system/log.h"
#include "system/random.h"
#include "system/world.h"
#include "text/code_page.h"
#include "text/text.h"

namespace vernoxa {
namespace {

std::string moduleFolder(const Services& services) {
  const FilePath module = services.text.path(services.state.placement.dsnDatPath);
  const std::string path = replaceAll(module.utf8(), "\\", "/");
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

FilePath libraryPath(const Services& services, const std::string& name) {
  return FilePath::fromUtf8(moduleFolder(services) + "/" + name);
}

// One text for all spellings of a file, as far as ASCII goes; empty for what is no path.
std::string comparable(Files& files, const FilePath& path) {
  std::string text = replaceAll(files.fullPath(path).utf8(), "\\", "/");
  text.erase(text.find_last_not_of("./ ") + 1);
  for (char& character : text) {
    if (character >= 'A' && character <= 'Z') {
      character = static_cast<char>(character - 'A' + 'a');
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

void tellNotMade(const Services& services, const FilePath& library, const std::string& why) {
  const std::string line = "library not made: " + library.utf8() + ": " + why;
  services.logs.openTraffic().writeLine(services.text.utf8ToAnsi(line));
}

// A base name that is free in the module's folder and not `taken`; empty when the numbers drawn are all in use.
std::string freeName(Services& services, const std::string& taken) {
  constexpr int mostDraws = 10000;
  for (int draw = 0; draw < mostDraws; ++draw) {
    std::string name = std::to_string(services.world.random.next());
    const bool used = std::any_of(libraryEndings.begin(), libraryEndings.end(), [&](const char* ending) {
      return services.world.files.exists(libraryPath(services, name + ending));
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
    tellNotMade(services, libraryPath(services, "*.olb"), "no free name");
    return false;
  }
  services.state.placement.libraryBaseName = temporary;
  services.state.placement.backupBaseName = renewed;
  return true;
}

FilePath temporaryLibraryPath(const Services& services) {
  return libraryPath(services, services.state.placement.libraryBaseName + ".olb");
}

FilePath newLibraryPath(const Services& services) {
  return libraryPath(services, services.state.placement.backupBaseName + ".olb");
}

FilePath libraryBackupPath(const Services& services) {
  return libraryPath(services, services.state.placement.libraryBaseName + "_0.OBK");
}

void noteMadeLibrary(Services& services, const FilePath& path) {
  services.state.madeLibraries.insert(comparable(services.world.files, path));
}

bool makeEmptyLibrary(Services& services, const FilePath& path) {
  std::string looked;
  for (const FilePath& folder : {services.state.installDirectory, services.state.hostExecutable.get().folder()}) {
    if (folder.empty()) {
      continue;  // would be the root of whichever drive is current
    }
    const FilePath original = folder / "config" / "Resource" / "Empty.olb";
    if (services.world.files.exists(original)) {
      return copyLibrary(services, original, path);
    }
    looked.append(looked.empty() ? "no " : " and no ").append(original.utf8());
  }
  tellNotMade(services, path, looked);
  return false;
}

bool copyLibrary(Services& services, const FilePath& from, const FilePath& to) {
  // Noted first: once it is there, nothing may fail any more that would keep it from being removed.
  const auto [note, added] = services.state.madeLibraries.insert(comparable(services.world.files, to));
  const CopyResult copied = services.world.files.copyFile(from, to);
  if (copied) {
    return true;
  }
  if (added) {
    services.state.madeLibraries.erase(note);
  }
  tellNotMade(services, to, "copy of " + from.utf8() + " failed, error " + std::to_string(copied.error));
  return false;
}

void removePlacementFile(Services& services, const FilePath& path) {
  if (!services.world.files.exists(path)) {
    return;
  }
  const std::string file = comparable(services.world.files, path);
  if (isUsersOwn(services.state, file)) {
    services.logs.openTraffic().writeLine("not removed: " + services.text.utf8ToAnsi(path.utf8()));
    return;
  }
  if (services.world.files.removeFile(path)) {
    services.state.madeLibraries.erase(file);  // who makes it anew is another matter
  }
}

}  // namespace vernoxa
