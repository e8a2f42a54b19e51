// Windows' mouse, keyboard and dialogs.
#pragma once

#include "system/desktop.h"

namespace vernoxa {

class WindowsDesktop final : public Desktop {
 public:
  ScreenPoint cursor() override;
  void moveKey(Key key, KeyMove move) override;
  void runInBackground(std::function<void()> action) override;
  std::optional<std::size_t> choose(const std::vector<std::string>& texts) override;
};

}  // namespace vernoxa
