// The system's registry, read only. Key names and values are in UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace vernoxa::inline system {

enum class RegistryRoot { localMachine, currentUser };

struct RegistryPath {
  RegistryRoot root = RegistryRoot::localMachine;
  std::string key;  // "\" between names, none at the ends
};

// A key's name and a text are read up to this many bytes of the code page, the ending zero included.
constexpr std::size_t registryBufferBytes = 260;

class Registry {
 public:
  virtual ~Registry() = default;
  // Names of the keys below, in the system's order, up to the first that cannot be read or is longer. None when the key
  // itself cannot be opened.
  virtual std::vector<std::string> subKeys(const RegistryPath& path) = 0;
  // A text value up to its first NUL byte, which need not be stored; references to the environment stay as they are.
  // `nullopt` if it is missing, not text, or longer.
  virtual std::optional<std::string> text(const RegistryPath& path, const std::string& name) = 0;
};

}  // namespace vernoxa::inline system
