#include "core/wide_text_windows.h"

#include <windows.h>

namespace vernoxa {

std::wstring toWide(std::string_view text, unsigned codePage) {
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), length);
  return wide;
}

}  // namespace vernoxa
