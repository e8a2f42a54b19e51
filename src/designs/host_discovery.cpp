#include "designs/host_discovery.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "system/files.h"
#include "system/log.h"
#include "system/registry.h"
#include "system/shared_path.h"
#include "tcl/script_host.h"
#include "text/text.h"

namespace vernoxa::designs {
namespace {

struct Source {
  RegistryPath path;
  const char* crashName;
};

// The installer of the host is a 32-bit program.
const Source sources[] = {
    {{RegistryRoot::localMachine, "SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall"},
     "readOrcadInstallInfo1"},
    {{RegistryRoot::currentUser, "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"}, "readOrcadInstallInfo"},
};

bool contains(const std::optional<std::string>& text, std::string_view part) {
  return text && text->find(part) != std::string::npos;
}

// A "\" at the end is left out, once.
FilePath folderAt(std::string_view location) {
  return FilePath::fromUtf8(location.substr(0, location.size() - (location.ends_with('\\') ? 1 : 0)));
}

std::optional<Installation> readEntry(Registry& registry, const RegistryPath& entry) {
  if (!contains(registry.text(entry, "Publisher"), "Cadence")) {
    return std::nullopt;
  }
  const auto location = registry.text(entry, "InstallLocation");
  const auto name = registry.text(entry, "DisplayName");
  // The vendor's installation manager and signal integrity products register under the same publisher.
  if (!location || !name || contains(name, "Manage") || contains(name, "Sigrity")) {
    return std::nullopt;
  }
  const auto version = registry.text(entry, "DisplayVersion");
  return version ? std::optional<Installation>({folderAt(*location), *version}) : std::nullopt;
}

void readSource(Registry& registry, const RegistryPath& path, std::vector<Installation>& found) {
  for (const std::string& name : registry.subKeys(path)) {
    if (auto installation = readEntry(registry, {path.root, path.key + "\\" + name})) {
      found.push_back(std::move(*installation));
    }
  }
}

std::string versionKey(const std::string& version) {
  return version.substr(0, 4);
}

// The host moved its executable between its versions 16 and 17.
const char* executableBelow(const std::string& hostVersion) {
  return hostVersion.starts_with("16") ? "tools\\capture\\Capture.exe" : "tools\\bin\\Capture.exe";
}

FilePath lastExecutableInFolders(Files& files, const FilePath& location, const std::string& suffix) {
  FilePath last;
  for (const FolderEntry& entry : files.entries(location)) {
    const FilePath candidate = location / entry.name / suffix;
    // Plain folders only, not hidden or read-only ones or links: those belong to somebody else.
    if (entry.attributes == directoryAttribute && files.exists(candidate)) {
      last = candidate;
    }
  }
  return last;
}

}  // namespace

std::vector<Installation> readOrcadInstallInfo(Registry& registry, const Logs& logs) {
  std::vector<Installation> found;
  for (const Source& source : sources) {
    try {
      readSource(registry, source.path, found);
    } catch (...) {
      logs.reportCrash(source.crashName);
    }
  }
  return found;
}

FilePath findHostExecutable(Files& files, const std::string& hostVersion,
                            const std::vector<Installation>& installations) {
  const auto match =
      std::find_if(installations.begin(), installations.end(), [&hostVersion](const Installation& installation) {
        return versionKey(installation.version) == versionKey(hostVersion);
      });
  const FilePath location = match == installations.end() ? FilePath() : match->location;
  const std::string suffix = executableBelow(hostVersion);
  FilePath usual = location / suffix;
  if (files.exists(usual) && !files.isFolder(usual)) {
    return usual;
  }
  return lastExecutableInFolders(files, location, suffix);
}

void setOrcadInstallPath(ScriptHost& host, Registry& registry, Files& files, const Logs& logs,
                         HostExecutable& executable) noexcept {
  try {
    const std::string version = host.evaluate(Script("GetProductVersion")).text;
    const auto installations = readOrcadInstallInfo(registry, logs);
    executable.set(findHostExecutable(files, version, installations));
  } catch (...) {
    logs.reportCrash("setOrcadInstallPath");
  }
}

}  // namespace vernoxa::designs
