// The library files of a placement: their names, and which files may be removed.
#pragma once

#include <set>
#include <string>
#include <utility>

#include "system/file_path.h"

namespace vernoxa::inline system {
class Files;
class HostExecutable;
class Logs;
class RandomNumbers;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::modules {

struct PlacementContext;

// Base names of one placement's libraries.
struct LibraryNames {
  std::string renewed = "Test";      // of the new library
  std::string temporary = "123456";  // of the temporary library
};

// Host thread only.
class LibraryFiles {
 public:
  // `installDirectory` is the plug-in's base directory; unlike the project folder it never changes.
  LibraryFiles(FilePath installDirectory, const HostExecutable& host, const PlacementContext& placement, Files& files,
               RandomNumbers& random, const TextConverter& converter, const Logs& logs)
      : installDirectory_(std::move(installDirectory)),
        host_(host),
        placement_(placement),
        files_(files),
        random_(random),
        converter_(converter),
        logs_(logs) {}

  // Paths with "/" between folders, in the folder of the module file, with the base names picked for the placement.
  FilePath temporaryPath() const;
  FilePath newPath() const;
  // The host's own backup of the temporary library.
  FilePath backupPath() const;

  // Around the making of a placement's libraries, after it has picked their names. A script may begin the next one
  // before this one ends.
  void beginPlacement() { ++running_; }
  void endPlacement() { --running_; }

  // Notes that the host may make this file for the running placement: it may be removed until names are picked while no
  // placement runs, also where the host makes it late. Notes kept for ever would grow by one with each placement, since
  // the host seldom makes the file, and a later file of that name may be the user's.
  void noteHostMakes(const FilePath& path);

  // Picks two new base names: numbers for which the module's folder has no library, lock or backup, so that no library
  // of the user is overwritten. False, with a line in the traffic log, if none is found.
  bool pickNames();
  // The names picked last, and that these are meant again: another placement may have picked its own meanwhile.
  const LibraryNames& names() const { return names_; }
  void meanAgain(const LibraryNames& names) { names_ = names; }

  // Makes a library without parts that can be written: a copy of the one in the installation, else of the one below the
  // host's program folder. False, with the reason in the traffic log, if that fails; an existing file stays.
  bool makeEmpty(const FilePath& path);

  // The same with a copy of another library.
  bool copy(const FilePath& from, const FilePath& to);

  // Removes a file that a placement leaves behind, if it exists; the traffic log tells of one that stays. A file of the
  // user always does: a design, a project, or a library or backup that this process did not make, however the path is
  // written.
  void remove(const FilePath& path);

 private:
  FilePath pathOf(const std::string& name) const;
  bool isUsersOwn(const std::string& file) const;
  std::string freeName(const std::string& taken);
  void tellNotMade(const FilePath& library, const std::string& why) const;

  const FilePath installDirectory_;
  const HostExecutable& host_;
  const PlacementContext& placement_;
  Files& files_;
  RandomNumbers& random_;
  const TextConverter& converter_;
  const Logs& logs_;
  LibraryNames names_;
  std::set<std::string> made_;       // the libraries that this process made, and may remove
  std::set<std::string> hostMakes_;  // what the host may have made for the placements of now
  int running_ = 0;                  // placements, one inside the other
};

}  // namespace vernoxa::modules
