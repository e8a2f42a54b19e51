#include "desktop/desktop_windows.h"

#include <cstring>

#include "desktop/gdi_windows.h"
#include "system/wide_text_windows.h"

namespace vernoxa::desktop {
namespace {

GlobalMemory movableCopy(const void* source, std::size_t size) {
  GlobalMemory memory(GlobalAlloc(GMEM_MOVEABLE, size));
  void* const bytes = memory ? GlobalLock(memory.get()) : nullptr;
  if (bytes == nullptr) {
    return {};
  }
  std::memcpy(bytes, source, size);
  GlobalUnlock(memory.get());
  return memory;
}

// Once the clipboard has accepted the memory, it owns it.
void put(UINT format, GlobalMemory memory) {
  if (memory && SetClipboardData(format, memory.get()) != nullptr) {
    static_cast<void>(memory.release());
  }
}

std::string olderMetafileBytes() {
  std::string bytes;
  const HANDLE memory = GetClipboardData(CF_METAFILEPICT);
  const auto* const picture = memory != nullptr ? static_cast<const METAFILEPICT*>(GlobalLock(memory)) : nullptr;
  if (picture != nullptr && GlobalSize(memory) >= sizeof *picture) {
    bytes.resize(GetMetaFileBitsEx(picture->hMF, 0, nullptr));
    bytes.resize(GetMetaFileBitsEx(picture->hMF, static_cast<UINT>(bytes.size()), bytes.data()));
  }
  if (picture != nullptr) {
    GlobalUnlock(memory);
  }
  return bytes;
}

class WindowsClipboardAccess final : public ClipboardAccess {
 public:
  explicit WindowsClipboardAccess(ClipboardLock lock) : lock_(std::move(lock)) {}

  bool hasMetafile() override { return IsClipboardFormatAvailable(CF_ENHMETAFILE) != 0; }

  std::optional<std::string> olderMetafile() override {
    // What programs put is told first, then what the system can make of it.
    UINT format = EnumClipboardFormats(0);
    while (format != 0 && format != CF_ENHMETAFILE && format != CF_METAFILEPICT) {
      format = EnumClipboardFormats(format);
    }
    return format == CF_METAFILEPICT ? std::optional(olderMetafileBytes()) : std::nullopt;
  }

  bool saveMetafile(const FilePath& path) override {
    // The clipboard keeps its own handle. The handle of the copy is ours, and closing it finishes the file.
    const auto picture = static_cast<HENHMETAFILE>(GetClipboardData(CF_ENHMETAFILE));
    const std::wstring file = toWide(path.utf8(), CP_UTF8);
    return picture != nullptr && static_cast<bool>(MetafileHandle(CopyEnhMetaFileW(picture, file.c_str())));
  }

  void replaceByText(const std::string& text) override {
    EmptyClipboard();
    put(CF_TEXT, movableCopy(text.c_str(), text.size() + 1));
    // Without this Windows would convert CF_TEXT for other programs by the code page of the keyboard layout in use, or
    // by that of a locale, which is not the system's where that is UTF-8.
    const std::wstring wide = toWide(text.c_str(), CP_ACP);
    put(CF_UNICODETEXT, movableCopy(wide.c_str(), (wide.size() + 1) * sizeof(wchar_t)));
    const LCID locale = GetSystemDefaultLCID();
    put(CF_LOCALE, movableCopy(&locale, sizeof locale));
  }

 private:
  ClipboardLock lock_;
};

class WindowsClipboard final : public Clipboard {
 public:
  std::unique_ptr<ClipboardAccess> open() override {
    ClipboardLock lock(OpenClipboard(nullptr) != 0);
    return lock ? std::make_unique<WindowsClipboardAccess>(std::move(lock)) : nullptr;
  }
};

}  // namespace

std::unique_ptr<Clipboard> windowsClipboard() {
  return std::make_unique<WindowsClipboard>();
}

}  // namespace vernoxa::desktop
