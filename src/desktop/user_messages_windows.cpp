#include "desktop/user_messages_windows.h"

#include <windows.h>

#include <string>

namespace vernoxa {

void WindowsUserMessages::show(std::string_view text, MessageIcon icon) {
  const UINT style = icon == MessageIcon::information ? MB_ICONINFORMATION : MB_OK;
  MessageBoxA(nullptr, std::string(text).c_str(), "澜图助手", style);
}

}  // namespace vernoxa
