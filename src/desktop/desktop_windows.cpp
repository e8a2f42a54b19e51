#include "desktop/desktop_windows.h"

#include <windows.h>

#include <utility>

#include "desktop/select_dialog_windows.h"
#include "system/thread_windows.h"

namespace vernoxa {

ScreenPoint WindowsDesktop::cursor() {
  POINT position{};
  return GetCursorPos(&position) != 0 ? ScreenPoint{position.x, position.y} : ScreenPoint{};
}

void WindowsDesktop::moveKey(Key key, KeyMove move) {
  keybd_event(static_cast<BYTE>(key), 0, move == KeyMove::release ? KEYEVENTF_KEYUP : 0, 0);
}

void WindowsDesktop::runInBackground(std::function<void()> action) {
  startDetachedThread(std::move(action));
}

std::optional<std::size_t> WindowsDesktop::choose(const std::vector<std::string>& texts) {
  return SelectDialog(texts).run();
}

}  // namespace vernoxa
