#include "system/system_windows.h"

#include <windows.h>

#include <process.h>
#include <shellapi.h>
#include <tlhelp32.h>

#include <array>

#include "system/handle_windows.h"
#include "system/wide_text_windows.h"

namespace vernoxa::inline system {
namespace {

constexpr std::size_t modulePathBytes = 99;

// Any address of this module does.
const char addressInModule = 0;

HMODULE ownModule() {
  MEMORY_BASIC_INFORMATION region{};
  if (VirtualQuery(&addressInModule, &region, sizeof region) == 0) {
    return nullptr;
  }
  return static_cast<HMODULE>(region.AllocationBase);
}

class WindowsProcesses final : public Processes {
 public:
  std::vector<Process> running() override {
    std::vector<Process> processes;
    const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof entry;
    if (!snapshot || Process32First(snapshot.get(), &entry) == 0) {
      return processes;
    }
    do {
      processes.push_back({entry.szExeFile, entry.th32ProcessID});
    } while (Process32Next(snapshot.get(), &entry) != 0);
    return processes;
  }

  int ownId() override { return _getpid(); }

  FilePath currentFolder() override {
    std::wstring folder(GetCurrentDirectoryW(0, nullptr), L'\0');
    const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data());
    folder.resize(length < folder.size() ? length : 0);  // another thread may have changed it meanwhile
    return FilePath::fromUtf8(fromWide(folder, CP_UTF8));
  }

  void setCurrentFolder(const FilePath& folder) override {
    SetCurrentDirectoryW(toWide(folder.utf8(), CP_UTF8).c_str());
  }

  void start(const std::string& file, const std::string& argument) override {
    ShellExecuteA(nullptr, "open", file.c_str(), argument.c_str(), nullptr, SW_MINIMIZE);
  }
};

}  // namespace

std::unique_ptr<Processes> windowsProcesses() {
  return std::make_unique<WindowsProcesses>();
}

FilePath modulePath() {
  std::array<wchar_t, MAX_PATH> buffer{};
  const DWORD length = GetModuleFileNameW(ownModule(), buffer.data(), static_cast<DWORD>(buffer.size()));
  std::wstring path(buffer.data(), length);
  while (fromWide(path, CP_ACP).size() > modulePathBytes) {
    path.pop_back();
  }
  return FilePath::fromUtf8(fromWide(path, CP_UTF8));
}

void pinModule() {
  HMODULE module = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, &addressInModule, &module);
}

}  // namespace vernoxa::inline system
