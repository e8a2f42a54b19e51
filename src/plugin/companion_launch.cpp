#include "plugin/companion_launch.h"

#include "system/files.h"
#include "system/log.h"
#include "system/system.h"

namespace vernoxa::plugin {
namespace {

// The current folder belongs to the host, so it is always set back.
class CurrentFolder {
 public:
  CurrentFolder(Processes& processes, const FilePath& folder)
      : processes_(processes), former_(processes.currentFolder()) {
    processes_.setCurrentFolder(folder);
  }
  ~CurrentFolder() { processes_.setCurrentFolder(former_); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  Processes& processes_;
  FilePath former_;
};

}  // namespace

std::uint16_t processIdFromName(Processes& processes, const Logs& logs, const std::string& text) noexcept {
  try {
    const auto running = processes.running();
    for (std::size_t index = 1; index < running.size(); ++index) {
      if (running[index].executable.find(text) != std::string::npos) {
        return static_cast<std::uint16_t>(running[index].id);
      }
    }
  } catch (...) {
    logs.reportCrash("GetProcessidFromName");
  }
  return 0;
}

void launchCompanion(Processes& processes, Files& files, const FilePath& baseDirectory) {
  const CurrentFolder folder(processes, baseDirectory);
  const bool usualName = files.exists(baseDirectory / "LanTuZS.exe");
  processes.start(usualName ? "LanTuZS.exe" : "lantuzs.exe", "AutoLogin");
}

}  // namespace vernoxa::plugin
