#include "modules/placement.h"

#include <unordered_set>
#include <utility>
#include <vector>

#include "modules/library_files.h"
#include "modules/placement_context.h"
#include "modules/placement_scripts.h"
#include "system/files.h"
#include "system/log.h"
#include "tcl/script_host.h"
#include "text/text_converter.h"

namespace vernoxa::modules {
namespace {

// The library that the host writes into; removed at the end in every case. It keeps its own paths, since a script may
// start the next placement before this one ends.
class TemporaryLibrary {
 public:
  explicit TemporaryLibrary(LibraryFiles& libraries)
      : libraries_(libraries), path_(libraries.temporaryPath()), backup_(libraries.backupPath()) {
    libraries_.beginPlacement();
  }
  TemporaryLibrary(const TemporaryLibrary&) = delete;
  TemporaryLibrary& operator=(const TemporaryLibrary&) = delete;
  ~TemporaryLibrary() {
    libraries_.endPlacement();
    if (!made_) {
      return;
    }
    try {
      libraries_.remove(path_);
      libraries_.remove(backup_);
    } catch (...) {  // no memory: the file stays, since a destructor must not throw
    }
  }

  // False if it cannot be made. No backup of its name exists yet: that is how the name was picked.
  bool make() {
    made_ = libraries_.makeEmpty(path_);
    if (made_) {
      libraries_.noteHostMakes(backup_);
    }
    return made_;
  }
  const FilePath& path() const { return path_; }

 private:
  LibraryFiles& libraries_;
  const FilePath path_;
  const FilePath backup_;
  bool made_ = false;
};

// Notes the module file of a placement for as long as that runs.
class RunningPlacement {
 public:
  RunningPlacement(std::set<std::string>& running, const std::string& path)
      : running_(running), noted_(running.insert(path)) {}
  RunningPlacement(const RunningPlacement&) = delete;
  RunningPlacement& operator=(const RunningPlacement&) = delete;
  ~RunningPlacement() {
    if (noted_.second) {
      running_.erase(noted_.first);
    }
  }

  // False if a placement of that file was running already.
  bool isFirst() const { return noted_.second; }

 private:
  std::set<std::string>& running_;
  const std::pair<std::set<std::string>::iterator, bool> noted_;
};

// Tcl needs memory for twenty times the length of a script, and ends the host when it gets none. The script for a part
// of ten thousand pins has about a third of this length.
bool isTooLong(const Script& script) {
  constexpr std::size_t longestScript = std::size_t{8} << 20U;
  return script.text().size() > longestScript;
}

}  // namespace

void ModulePlacer::evaluateLogged(ScriptHost& host, const Script& script) const {
  LogWriter log = logs_.openTraffic();
  if (isTooLong(script)) {
    log.writeLine("not placed: a script of more than 8 MB");
    return;
  }
  if (log.enabled()) {
    log.writeLine(converter_.utf8ToAnsi(script.text()));
  }
  host.evaluate(script);
}

bool ModulePlacer::isPlaceable(const ModuleFile& module) const {
  if (!module.hasLibrary()) {
    logs_.openTraffic().writeLine(module.hasRoot() ? "libItem is null" : "root is null");
  }
  return module.hasLibrary();
}

void ModulePlacer::placeLibraryParts(ScriptHost& host, const ModuleFile& module, const std::string& libraryPath,
                                     DraggedBox box) const {
  std::unordered_set<std::string_view> seen;
  std::vector<Script> pinScripts;
  for (const JsonView entry : module.library()) {
    const std::string_view name = nameOf(entry);
    // Parts without a name are never duplicates.
    if (!entry.isObject() || (!name.empty() && !seen.insert(name).second)) {
      continue;
    }
    Script script = libraryPartScript(libraryPath, entry);
    evaluateLogged(host, script);
    if (!isTooLong(script)) {
      pinScripts.push_back(std::move(script.callInstead("setPinNum")));
    }
  }
  if (const auto size = module.viewBox(); size && box == DraggedBox::made) {
    evaluateLogged(host, viewBoxPartScript(libraryPath, *size));
  }
  for (const Script& script : pinScripts) {
    host.evaluate(script);
  }
}

bool ModulePlacer::copyToNewLibrary(const FilePath& from, const FilePath& to) {
  libraries_.remove(to);
  return libraries_.copy(from, to);
}

PlacedLibrary ModulePlacer::placeLibrary(ScriptHost& host, DraggedBox box) {
  PlacedLibrary placed;
  const bool named = libraries_.pickNames();
  placed.newLibrary = libraries_.newPath();
  placed.names = libraries_.names();
  placed.module = ModuleFile::read(files_, logs_, converter_.path(placement_.dsnDatPath));
  if (!named || !isPlaceable(placed.module)) {
    return placed;
  }
  TemporaryLibrary temporary(libraries_);
  if (!temporary.make()) {
    return placed;
  }
  placeLibraryParts(host, placed.module, temporary.path().utf8(), box);
  placed.made = copyToNewLibrary(temporary.path(), placed.newLibrary);
  return placed;
}

void ModulePlacer::placeModule(ScriptHost& host) {
  const PlacementContext asked = placement_;
  placement_.placeState = 0;
  const RunningPlacement running(placing_, asked.dsnDatPath);
  if (!running.isFirst()) {
    logs_.openTraffic().writeLine("root is null");
    return;
  }
  libraries_.remove(libraries_.newPath());
  const PlacedLibrary placed = placeLibrary(host, DraggedBox::none);
  if (!placed.made) {
    return;
  }
  if (asked.placeState == 1) {
    host.evaluate(cataloguePartScript("Part", placed.module.firstPartName(), asked, converter_));
  } else {
    for (const JsonView object : placed.module.objects()) {
      if (object.isObject()) {
        evaluateLogged(host, schematicObjectScript(object, asked, converter_));
      }
    }
  }
  libraries_.remove(placed.newLibrary);
  libraries_.remove(converter_.path(asked.dsnDatPath));
  logs_.openTraffic().writeLine("over!!!");
}

}  // namespace vernoxa::modules
