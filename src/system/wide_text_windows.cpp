#include "system/wide_text_windows.h"

#include <windows.h>

namespace vernoxa::inline system {

std::wstring toWide(std::string_view text, unsigned codePage) {
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), length);
  return wide;
}

std::string fromWide(std::wstring_view wide, unsigned codePage) {
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(codePage, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(codePage, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
  return text;
}

std::optional<std::string> nameFromWide(std::wstring_view wide, unsigned codePage) {
  // UTF-8 has every character, and for it the system allows neither the flag nor the pointer.
  BOOL replaced = FALSE;
  const bool hasAll = codePage == CP_UTF8;
  const DWORD flags = hasAll ? 0 : WC_NO_BEST_FIT_CHARS;
  BOOL* const noticed = hasAll ? nullptr : &replaced;
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(codePage, flags, wide.data(), size, nullptr, 0, nullptr, noticed);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(codePage, flags, wide.data(), size, text.data(), length, nullptr, noticed);
  return replaced == FALSE ? std::optional(text) : std::nullopt;
}

}  // namespace vernoxa::inline system
