#include "desktop/desktop_windows.h"

#include <windows.h>

#include <utility>

#include "desktop/select_dialog_windows.h"
#include "system/system_windows.h"

namespace vernoxa::desktop {
namespace {

class WindowsDesktop final : public Desktop {
 public:
  ScreenPoint cursor() override {
    POINT position{};
    return GetCursorPos(&position) != 0 ? ScreenPoint{position.x, position.y} : ScreenPoint{};
  }

  void moveKey(Key key, KeyMove move) override {
    keybd_event(static_cast<BYTE>(key), 0, move == KeyMove::release ? KEYEVENTF_KEYUP : 0, 0);
  }

  void runInBackground(std::function<void()> action) override { startDetachedThread(std::move(action)); }

  std::optional<std::size_t> choose(const std::vector<std::string>& texts) override {
    return SelectDialog(texts).run();
  }
};

}  // namespace

std::unique_ptr<Desktop> windowsDesktop() {
  return std::make_unique<WindowsDesktop>();
}

}  // namespace vernoxa::desktop
