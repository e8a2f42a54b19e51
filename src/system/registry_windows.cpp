#include "system/system_windows.h"

#include <array>

#include "system/handle_windows.h"
#include "system/wide_text_windows.h"

namespace vernoxa::inline system {
namespace {

struct RegistryKeyTrait {
  using Handle = HKEY;
  static Handle invalid() { return nullptr; }
  static void close(Handle handle) { RegCloseKey(handle); }
};

using RegistryKey = Owned<RegistryKeyTrait>;

RegistryKey openForReading(const RegistryPath& path) {
  const HKEY root = path.root == RegistryRoot::localMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
  HKEY key = nullptr;
  return RegistryKey(
      RegOpenKeyExW(root, toWide(path.key, CP_UTF8).c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS ? key : nullptr);
}

class WindowsRegistry final : public Registry {
 public:
  std::vector<std::string> subKeys(const RegistryPath& path) override {
    std::vector<std::string> names;
    const RegistryKey key = openForReading(path);
    if (!key) {
      return names;
    }
    std::array<wchar_t, 256> buffer{};
    for (DWORD index = 0;; ++index) {
      auto length = static_cast<DWORD>(buffer.size());
      if (RegEnumKeyExW(key.get(), index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
          ERROR_SUCCESS) {
        return names;
      }
      const std::wstring_view name(buffer.data(), length);
      if (fromWide(name, CP_ACP).size() >= registryBufferBytes) {
        return names;
      }
      names.push_back(fromWide(name, CP_UTF8));
    }
  }

  std::optional<std::string> text(const RegistryPath& path, const std::string& name) override {
    const RegistryKey key = openForReading(path);
    std::array<wchar_t, registryBufferBytes> buffer{};
    auto size = static_cast<DWORD>(sizeof buffer);
    DWORD type = REG_NONE;
    if (!key || RegQueryValueExW(key.get(), toWide(name, CP_UTF8).c_str(), nullptr, &type,
                                 reinterpret_cast<BYTE*>(buffer.data()), &size) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    if (type != REG_SZ && type != REG_EXPAND_SZ) {
      return std::nullopt;
    }
    // The program that wrote the value may have left out the terminating NUL.
    const std::wstring_view stored(buffer.data(), size / sizeof(wchar_t));
    if (fromWide(stored, CP_ACP).size() > registryBufferBytes) {
      return std::nullopt;
    }
    return fromWide(stored.substr(0, stored.find(L'\0')), CP_UTF8);
  }
};

}  // namespace

std::unique_ptr<Registry> windowsRegistry() {
  return std::make_unique<WindowsRegistry>();
}

}  // namespace vernoxa::inline system
