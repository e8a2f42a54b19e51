#include "core/registry_windows.h"

#include <array>

#include "core/handle_windows.h"

namespace vernoxa {
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
  return RegistryKey(RegOpenKeyExA(root, path.key.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS ? key : nullptr);
}

}  // namespace

std::vector<std::string> WindowsRegistry::subKeys(const RegistryPath& path) {
  std::vector<std::string> names;
  const RegistryKey key = openForReading(path);
  if (!key) {
    return names;
  }
  std::array<char, registryBufferBytes> buffer{};
  for (DWORD index = 0;; ++index) {
    auto length = static_cast<DWORD>(buffer.size());
    if (RegEnumKeyExA(key.get(), index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      return names;
    }
    names.emplace_back(buffer.data(), length);
  }
}

std::optional<std::string> WindowsRegistry::text(const RegistryPath& path, const std::string& name) {
  const RegistryKey key = openForReading(path);
  std::array<char, registryBufferBytes> buffer{};
  auto size = static_cast<DWORD>(buffer.size());
  DWORD type = REG_NONE;
  if (!key || RegQueryValueExA(key.get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()),
                               &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  if (type != REG_SZ && type != REG_EXPAND_SZ) {
    return std::nullopt;
  }
  // Whoever wrote the value may have left out its ending zero.
  const std::string text(buffer.data(), size);
  return text.substr(0, text.find('\0'));
}

}  // namespace vernoxa
