#include "modules/library_files.h"

#include <algorithm>
#include <array>

#include "modules/placement_context.h"
#include "system/files.h"
#include "system/log.h"
#include "system/random.h"
#include "system/shared_path.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::modules {
namespace {

// The same text for all spellings of one file (of letters only ASCII ones); empty for anything that is not a path.
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

// The files that the editor keeps for a library. A lock without the others means that the library is being made.
constexpr std::array<const char*, 3> libraryEndings = {".OLBlck", ".olb", "_0.OBK"};

}  // namespace

FilePath LibraryFiles::pathOf(const std::string& name) const {
  const std::string module = replaceAll(converter_.path(placement_.dsnDatPath).utf8(), "\\", "/");
  const std::size_t slash = module.rfind('/');
  const std::string folder = slash == std::string::npos ? std::string() : module.substr(0, slash);
  return FilePath::fromUtf8(folder + "/" + name);
}

bool LibraryFiles::isUsersOwn(const std::string& file) const {
  const auto extension = extensionOf(file);
  // A colon after that of the drive, which may follow "//?/", names an alternate data stream of a file.
  const std::size_t drive = file.starts_with("//?/") || file.starts_with("//./") ? 6 : 2;
  const bool stream = file.find(':', drive) != std::string::npos;
  if (file.empty() || extension == "dsn" || extension == "opj" || stream) {
    return true;
  }
  const bool library = extension == "olb" || extension == "obk";
  return library && made_.count(file) == 0 && hostMakes_.count(file) == 0;
}

void LibraryFiles::tellNotMade(const FilePath& library, const std::string& why) const {
  const std::string line = "library not made: " + library.utf8() + ": " + why;
  logs_.openTraffic().writeLine(converter_.utf8ToAnsi(line));
}

// A base name that is free in the module's folder and is not `taken`; empty if all numbers tried are in use.
std::string LibraryFiles::freeName(const std::string& taken) {
  constexpr int mostTries = 10000;
  for (int tried = 0; tried < mostTries; ++tried) {
    std::string name = std::to_string(random_.next());
    const bool used = std::any_of(libraryEndings.begin(), libraryEndings.end(),
                                  [&](const char* ending) { return files_.exists(pathOf(name + ending)); });
    if (!used && name != taken) {
      return name;
    }
  }
  return {};
}

bool LibraryFiles::pickNames() {
  const std::string temporary = freeName(std::string());
  const std::string renewed = freeName(temporary);
  // Never true: the second would mean that one name is free and a second is not.
  if (temporary.empty() || renewed.empty()) {
    tellNotMade(pathOf("*.olb"), "no free name");
    return false;
  }
  if (running_ == 0) {
    hostMakes_.clear();
  }
  names_ = {renewed, temporary};
  return true;
}

FilePath LibraryFiles::temporaryPath() const {
  return pathOf(names_.temporary + ".olb");
}

FilePath LibraryFiles::newPath() const {
  return pathOf(names_.renewed + ".olb");
}

FilePath LibraryFiles::backupPath() const {
  return pathOf(names_.temporary + "_0.OBK");
}

void LibraryFiles::noteHostMakes(const FilePath& path) {
  hostMakes_.insert(comparable(files_, path));
}

bool LibraryFiles::makeEmpty(const FilePath& path) {
  std::string looked;
  for (const FilePath& folder : {installDirectory_, host_.get().folder()}) {
    if (folder.empty()) {
      continue;  // would be the root of the current drive
    }
    const FilePath original = folder / "config" / "Resource" / "Empty.olb";
    if (files_.exists(original)) {
      return copy(original, path);
    }
    looked.append(looked.empty() ? "no " : " and no ").append(original.utf8());
  }
  tellNotMade(path, looked);
  return false;
}

bool LibraryFiles::copy(const FilePath& from, const FilePath& to) {
  // Noted before copying: once the file exists, a failure here would keep it from ever being removed.
  const auto [note, added] = made_.insert(comparable(files_, to));
  const CopyResult copied = files_.copyFile(from, to);
  if (copied) {
    return true;
  }
  if (added) {
    made_.erase(note);
  }
  tellNotMade(to, "copy of " + from.utf8() + " failed, error " + std::to_string(copied.error));
  return false;
}

void LibraryFiles::remove(const FilePath& path) {
  if (!files_.exists(path)) {
    return;
  }
  const std::string file = comparable(files_, path);
  if (isUsersOwn(file) || !files_.removeFile(path)) {
    logs_.openTraffic().writeLine("not removed: " + converter_.utf8ToAnsi(path.utf8()));
    return;
  }
  made_.erase(file);  // the next file of that name may be somebody else's
  hostMakes_.erase(file);
}

}  // namespace vernoxa::modules
