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

// The longest key name or text that is read, in bytes of the code page with the terminating NUL.
constexpr std::size_t registryBufferBytes = 260;

class Registry {
 public:
  virtual ~Registry() = default;
  // Names of the keys below, in the system's order, up to the first that cannot be read or is too long. None if the key
  // itself cannot be opened.
  virtual std::vector<std::string> subKeys(const RegistryPath& path) = 0;
  // A text value, up to its first NUL byte if it has one. References to environment variables are not expanded.
  // `nullopt` if it is missing, not text, or too long.
  virtual std::optional<std::string> text(const RegistryPath& path, const std::string& name) = 0;
};

}  // namespace vernoxa::inline system
