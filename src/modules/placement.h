// Places what the companion sent: a shared module or one catalogue part.
#pragma once

#include <set>
#include <string>

#include "modules/library_files.h"
#include "modules/module_file.h"
#include "system/file_path.h"

namespace vernoxa::inline tcl {
class Script;
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::modules {

struct PlacementContext;

struct PlacedLibrary {
  bool made = false;    // the new library has the module's parts
  FilePath newLibrary;  // "/" between folders; made or not
  LibraryNames names;
  ModuleFile module;
};

enum class DraggedBox { none, made };

// Host thread only. `PlacementContext` says which module file to place and what to set on its parts.
class ModulePlacer {
 public:
  ModulePlacer(PlacementContext& placement, LibraryFiles& libraries, Files& files, const TextConverter& converter,
               const Logs& logs)
      : placement_(placement), libraries_(libraries), files_(files), converter_(converter), logs_(logs) {}

  // Has the host write the module's library parts into a temporary library, then copies that to the new library. Picks
  // both names. `DraggedBox::made` adds the part of the module's size that the user drags. The temporary library is
  // removed in every case. If a library cannot be made or the module cannot be read ("root is null", "libItem is
  // null"), nothing is made, and one line in the traffic log says why.
  PlacedLibrary placeLibrary(ScriptHost& host, DraggedBox box);

  // The whole placement: the library, then the module's objects or the one part; afterwards the new library and the
  // module file are removed. Does nothing more if `placeLibrary` made nothing. `placeState` is 0
  // from its start. For a module whose placement still runs there is only the line "root is null": that placement
  // removes the file when it ends.
  void placeModule(ScriptHost& host);

 private:
  void evaluateLogged(ScriptHost& host, const Script& script) const;
  bool isPlaceable(const ModuleFile& module) const;
  void placeLibraryParts(ScriptHost& host, const ModuleFile& module, const std::string& libraryPath,
                         DraggedBox box) const;
  bool copyToNewLibrary(const FilePath& from, const FilePath& to);

  PlacementContext& placement_;
  LibraryFiles& libraries_;
  Files& files_;
  const TextConverter& converter_;
  const Logs& logs_;
  std::set<std::string> placing_;  // the module files of the placements that run
};

}  // namespace vernoxa::modules
