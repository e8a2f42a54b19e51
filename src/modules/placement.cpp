#include "modules/placement.h"

#include <unordered_set>
#include <vector>

#include "dispatch/services.h"
#include "dispatch/state.h"
#include "modules/library_files.h"
#include "modules/placement_scripts.h"
#include "system/files.h"
#include "system/log.h"
#include "system/world.h"
#include "tcl/script_host.h"
#include "text/code_page.h"

namespace vernoxa {
namespace {

// The host makes it beside the temporary library, whose name is drawn so that no backup has it yet.
FilePath notedBackup(Services& services) {
  FilePath path = libraryBackupPath(services);
  noteMadeLibrary(services, path);
  return path;
}

// The library that the host writes into, gone at the end in every case. It keeps its own paths: a script may bring the
// next placement in before this one ends.
class TemporaryLibrary {
 public:
  explicit TemporaryLibrary(Services& services)
      : services_(services),
        path_(temporaryLibraryPath(services)),
        backup_(notedBackup(services)),
        made_(makeEmptyLibrary(services, path_)) {}
  TemporaryLibrary(const TemporaryLibrary&) = delete;
  TemporaryLibrary& operator=(const TemporaryLibrary&) = delete;
  ~TemporaryLibrary() {
    if (!made_) {
      return;
    }
    try {
      removePlacementFile(services_, path_);
      removePlacementFile(services_, backup_);
    } catch (...) {  // memory: the file stays, and nothing leaves a destructor
    }
  }

  bool made() const { return made_; }
  const FilePath& path() const { return path_; }

 private:
  Services& services_;
  const FilePath path_;
  const FilePath backup_;
  const bool made_;
};

// The host's Tcl takes twenty times a script's length of memory for it, and ends with the host when there is none left.
// A part of ten thousand pins has about a third of this.
bool isTooLong(const Script& script) {
  constexpr std::size_t longestScript = std::size_t{8} << 20U;
  return script.text().size() > longestScript;
}

void evaluateLogged(ScriptHost& host, const Services& services, const Script& script) {
  LogWriter log = services.logs.openTraffic();
  if (isTooLong(script)) {
    log.writeLine("not placed: a script of more than 8 MB");
    return;
  }
  if (log.enabled()) {
    log.writeLine(services.text.utf8ToAnsi(script.text()));
  }
  host.evaluate(script);
}

bool isPlaceable(const ModuleFile& module, const Services& services) {
  if (!module.hasLibrary()) {
    services.logs.openTraffic().writeLine(module.hasRoot() ? "libItem is null" : "root is null");
  }
  return module.hasLibrary();
}

void placeLibraryParts(ScriptHost& host, const Services& services, const ModuleFile& module,
                       const std::string& libraryPath, DraggedBox box) {
  std::unordered_set<std::string_view> seen;
  std::vector<Script> pinScripts;
  for (const JsonView entry : module.library()) {
    const std::string_view name = nameOf(entry);
    // What has no name is no other one's double.
    if (!entry.isObject() || (!name.empty() && !seen.insert(name).second)) {
      continue;
    }
    const Script script = libraryPartScript(libraryPath, entry);
    evaluateLogged(host, services, script);
    if (!isTooLong(script)) {
      pinScripts.push_back(script.startingWith("setPinNum "));
    }
  }
  if (const auto size = module.viewBox(); size && box == DraggedBox::made) {
    evaluateLogged(host, services, viewBoxPartScript(libraryPath, *size));
  }
  for (const Script& script : pinScripts) {
    host.evaluate(script);
  }
}

bool copyToNewLibrary(Services& services, const FilePath& from, const FilePath& to) {
  removePlacementFile(services, to);
  return copyLibrary(services, from, to);
}

}  // namespace

PlacedLibrary placeLibrary(ScriptHost& host, Services& services, DraggedBox box) {
  PlacedLibrary placed;
  const bool named = drawLibraryNames(services);
  placed.newLibrary = newLibraryPath(services);
  placed.module = ModuleFile::read(services, services.text.path(services.state.placement.dsnDatPath));
  if (!named || !isPlaceable(placed.module, services)) {
    return placed;
  }
  const TemporaryLibrary temporary(services);
  if (!temporary.made()) {
    return placed;
  }
  placeLibraryParts(host, services, placed.module, temporary.path().utf8(), box);
  placed.made = copyToNewLibrary(services, temporary.path(), placed.newLibrary);
  return placed;
}

void placeModule(ScriptHost& host, Services& services) {
  const PlacementContext asked = services.state.placement;
  services.state.placement.placeState = 0;
  removePlacementFile(services, newLibraryPath(services));
  const PlacedLibrary placed = placeLibrary(host, services, DraggedBox::none);
  if (!placed.made) {
    return;
  }
  if (asked.placeState == 1) {
    host.evaluate(cataloguePartScript("Part", placed.module.firstPartName(), asked, services.text));
  } else {
    for (const JsonView object : placed.module.objects()) {
      if (object.isObject()) {
        evaluateLogged(host, services, schematicObjectScript(object, asked, services.text));
      }
    }
  }
  removePlacementFile(services, placed.newLibrary);
  removePlacementFile(services, services.text.path(asked.dsnDatPath));
  services.logs.openTraffic().writeLine("over!!!");
}

}  // namespace vernoxa
