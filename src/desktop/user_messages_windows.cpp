#include "desktop/desktop_windows.h"

#include <windows.h>

#include <string>

#include "system/wide_text_windows.h"

namespace vernoxa::desktop {
namespace {

class WindowsUserMessages final : public UserMessages {
 public:
  void show(std::u8string_view text, MessageIcon icon) override {
    const UINT style = icon == MessageIcon::information ? MB_ICONINFORMATION : MB_OK;
    const std::wstring wide = toWide({reinterpret_cast<const char*>(text.data()), text.size()}, CP_UTF8);
    MessageBoxW(nullptr, wide.c_str(), L"澜图助手", style);
  }
};

}  // namespace

std::unique_ptr<UserMessages> windowsUserMessages() {
  return std::make_unique<WindowsUserMessages>();
}

}  // namespace vernoxa::desktop
