// Owners for the handles that drawing and the clipboard need, and the playing of metafiles.
#pragma once

#include <chrono>

#include "system/handle_windows.h"

namespace vernoxa::desktop {

struct ScreenContextTrait {
  using Handle = HDC;
  static Handle invalid() { return nullptr; }
  static void close(Handle handle) { ReleaseDC(nullptr, handle); }
};

struct MemoryContextTrait {
  using Handle = HDC;
  static Handle invalid() { return nullptr; }
  static void close(Handle handle) { DeleteDC(handle); }
};

template <class GdiHandle>
struct GdiObjectTrait {
  using Handle = GdiHandle;
  static Handle invalid() { return nullptr; }
  static void close(Handle handle) { DeleteObject(handle); }
};

struct MetafileTrait {
  using Handle = HENHMETAFILE;
  static Handle invalid() { return nullptr; }
  static void close(Handle handle) { DeleteEnhMetaFile(handle); }
};

struct GlobalMemoryTrait {
  using Handle = HGLOBAL;
  static Handle invalid() { return nullptr; }
  static void close(Handle handle) { GlobalFree(handle); }
};

// The clipboard has no handle: it is open or not.
struct ClipboardTrait {
  using Handle = bool;
  static Handle invalid() { return false; }
  static void close(Handle) { CloseClipboard(); }
};

using ScreenContext = Owned<ScreenContextTrait>;
using MemoryContext = Owned<MemoryContextTrait>;
using Bitmap = Owned<GdiObjectTrait<HBITMAP>>;
using Brush = Owned<GdiObjectTrait<HBRUSH>>;
using Font = Owned<GdiObjectTrait<HFONT>>;
using MetafileHandle = Owned<MetafileTrait>;
using GlobalMemory = Owned<GlobalMemoryTrait>;
using ClipboardLock = Owned<ClipboardTrait>;

// Selects an object into a device context, and the former one again at the end: a selected object cannot be deleted.
class Selection {
 public:
  Selection(HDC context, HGDIOBJ object) : context_(context), former_(SelectObject(context, object)) {}
  ~Selection() {
    if (former_ != nullptr) {
      SelectObject(context_, former_);
    }
  }
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;

  explicit operator bool() const { return former_ != nullptr; }

 private:
  HDC context_;
  HGDIOBJ former_;
};

// Draws a metafile that was checked before (metafile_check.h) into that rectangle. A record that cannot be drawn,
// floods an area, or would draw far beyond any picture is left out; the others still make a picture. False if the time
// ran out before the last record, or would run out with its shapes (metafile_work.h).
bool playMetafile(HDC context, HENHMETAFILE metafile, const RECT& whole, std::chrono::milliseconds limit);

}  // namespace vernoxa::desktop
