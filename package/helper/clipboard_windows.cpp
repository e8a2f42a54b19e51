#include "helper_windows.h"

#include <array>
#include <utility>
#include <vector>

namespace {

// The clipboard, held open. Who opens it without a window of his own may not put anything there.
class Clipboard {
 public:
  Clipboard() : window_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)) {
    constexpr int tries = 20;
    for (int done = 0; done < tries && !open_; ++done) {  // another program may hold it for a moment
      open_ = OpenClipboard(window_) != FALSE;
      if (!open_) {
        Sleep(50);
      }
    }
  }
  ~Clipboard() {
    if (open_) {
      CloseClipboard();
    }
    DestroyWindow(window_);
  }
  Clipboard(const Clipboard&) = delete;
  Clipboard& operator=(const Clipboard&) = delete;

  [[nodiscard]] bool isOpen() const { return open_; }

 private:
  HWND window_;
  bool open_ = false;
};

// What was on it, by format: bytes, or the bits of a metafile.
std::vector<std::pair<UINT, std::string>>& kept() {
  static std::vector<std::pair<UINT, std::string>> contents;
  return contents;
}

constexpr const char* noneOpens = "another program holds the clipboard";

// Windows makes these of others, or they are handles that mean nothing without their owner.
bool isMadeOfAnother(UINT format) {
  constexpr std::array<UINT, 4> made = {CF_BITMAP, CF_PALETTE, CF_METAFILEPICT, CF_LOCALE};
  for (const UINT each : made) {
    if (format == each) {
      return true;
    }
  }
  return false;
}

bool keepOne(UINT format) {
  const HANDLE data = GetClipboardData(format);
  if (data == nullptr) {
    return false;
  }
  std::string bytes;
  if (format == CF_ENHMETAFILE) {
    const auto metafile = static_cast<HENHMETAFILE>(data);
    bytes.resize(GetEnhMetaFileBits(metafile, 0, nullptr));
    GetEnhMetaFileBits(metafile, static_cast<UINT>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data()));
  } else {
    const void* const memory = GlobalLock(data);
    if (memory == nullptr) {
      return false;
    }
    bytes.assign(static_cast<const char*>(memory), GlobalSize(data));
    GlobalUnlock(data);
  }
  kept().emplace_back(format, std::move(bytes));
  return true;
}

int keepClipboard(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  const Clipboard clipboard;
  if (!clipboard.isOpen()) {
    return failed(interp, noneOpens);
  }
  kept().clear();
  for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format)) {
    const bool isHandle = format >= CF_PRIVATEFIRST && format <= CF_GDIOBJLAST;
    if (isHandle || format == CF_OWNERDISPLAY || (!isMadeOfAnother(format) && !keepOne(format))) {
      return failed(interp, "the clipboard holds what cannot be put back");
    }
  }
  if (kept().empty() && CountClipboardFormats() > 0) {
    return failed(interp, "the clipboard holds what cannot be put back");
  }
  return TCL_OK;
}

HANDLE memoryOf(const std::string& bytes) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
  if (void* const place = memory != nullptr ? GlobalLock(memory) : nullptr) {
    bytes.copy(static_cast<char*>(place), bytes.size());
    GlobalUnlock(memory);
  }
  return memory;
}

// The clipboard owns what it takes; what it refuses is freed.
bool putBack(UINT format, const std::string& bytes) {
  if (format == CF_ENHMETAFILE) {
    const HENHMETAFILE metafile =
        SetEnhMetaFileBits(static_cast<UINT>(bytes.size()), reinterpret_cast<const BYTE*>(bytes.data()));
    const bool taken = metafile != nullptr && SetClipboardData(format, metafile) != nullptr;
    if (!taken && metafile != nullptr) {
      DeleteEnhMetaFile(metafile);
    }
    return taken;
  }
  const HANDLE memory = memoryOf(bytes);
  const bool taken = memory != nullptr && SetClipboardData(format, memory) != nullptr;
  if (!taken && memory != nullptr) {
    GlobalFree(memory);
  }
  return taken;
}

// Only formats that programs registered have a name.
std::string nameOf(UINT format) {
  std::array<wchar_t, 256> name{};
  return GetClipboardFormatNameW(format, name.data(), static_cast<int>(name.size())) > 0 ? utf8Of(name.data())
                                                                                         : std::to_string(format);
}

int restoreClipboard(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  const Clipboard clipboard;
  if (!clipboard.isOpen()) {
    return failed(interp, noneOpens);
  }
  EmptyClipboard();
  std::string lost;
  for (const auto& [format, bytes] : kept()) {
    if (!putBack(format, bytes)) {
      lost += (lost.empty() ? "" : ", ") + nameOf(format);
    }
  }
  if (!lost.empty()) {
    return failed(interp, ("of what was on the clipboard, these formats could not be put back: " + lost).c_str());
  }
  return TCL_OK;
}

int clipboardText(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  const Clipboard clipboard;
  const HANDLE data = clipboard.isOpen() ? GetClipboardData(CF_UNICODETEXT) : nullptr;
  if (data == nullptr) {
    return failed(interp, clipboard.isOpen() ? "there is no text on the clipboard" : noneOpens);
  }
  Tcl_SetObjResult(interp, textOf(utf8Of(static_cast<const wchar_t*>(GlobalLock(data)))));
  GlobalUnlock(data);
  return TCL_OK;
}

int putPicture(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  const Clipboard clipboard;
  if (!clipboard.isOpen()) {
    return failed(interp, noneOpens);
  }
  constexpr RECT frame{0, 0, 4000, 3000};  // hundredths of a millimetre
  const HDC context = CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
  Rectangle(context, 5, 5, 100, 60);
  const HENHMETAFILE picture = CloseEnhMetaFile(context);
  EmptyClipboard();
  return SetClipboardData(CF_ENHMETAFILE, picture) != nullptr ? TCL_OK : failed(interp, "the picture was not taken");
}

}  // namespace

void createClipboardCommands(Tcl_Interp* interp) {
  Tcl_CreateObjCommand(interp, "keepClipboard", keepClipboard, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "restoreClipboard", restoreClipboard, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "clipboardText", clipboardText, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "putPicture", putPicture, nullptr, nullptr);
}
