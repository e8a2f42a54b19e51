// Windows' registry.
#pragma once

#include "system/registry.h"

namespace vernoxa {

class WindowsRegistry final : public Registry {
 public:
  std::vector<std::string> subKeys(const RegistryPath& path) override;
  std::optional<std::string> text(const RegistryPath& path, const std::string& name) override;
};

}  // namespace vernoxa
