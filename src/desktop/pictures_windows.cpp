#include "desktop/desktop_windows.h"

#include <array>
#include <cstring>

#include "desktop/bitmap_file.h"
#include "desktop/gdi_windows.h"

namespace vernoxa::desktop {
namespace {

// GetDIBits writes the palette right behind the header.
struct BitmapInformation {
  BITMAPINFOHEADER header{};
  std::array<RGBQUAD, 256> palette{};
};
static_assert(sizeof(BITMAPINFOHEADER) == bitmapInformationBytes);

bool paint(HDC screen, HBITMAP bitmap, HENHMETAFILE metafile, PixelSize size, std::chrono::milliseconds limit) {
  const MemoryContext memory(CreateCompatibleDC(screen));
  if (!memory) {
    return false;
  }
  const Selection selected(memory.get(), bitmap);
  if (!selected) {
    return false;
  }
  RECT clip{};
  GetClipBox(memory.get(), &clip);
  {
    const Selection white(memory.get(), GetStockObject(WHITE_BRUSH));
    PatBlt(memory.get(), clip.left, clip.top, clip.right - clip.left, clip.bottom - clip.top, PATCOPY);
  }
  const RECT whole{0, 0, size.width, size.height};
  return playMetafile(memory.get(), metafile, whole, limit);
}

int depthOf(HBITMAP bitmap) {
  BITMAP description{};
  GetObjectA(bitmap, sizeof description, &description);
  return description.bmPlanes * description.bmBitsPixel;
}

std::optional<PackedBitmap> pack(HDC screen, HBITMAP bitmap, PixelSize size) {
  const int bitCount = depthOf(bitmap);
  const auto layout = bitmapLayout(size, bitCount);
  if (!layout) {
    return std::nullopt;
  }
  BitmapInformation information;
  information.header.biSize = sizeof information.header;
  information.header.biWidth = size.width;
  information.header.biHeight = size.height;
  information.header.biPlanes = 1;
  information.header.biBitCount = static_cast<WORD>(bitCount);
  information.header.biCompression = BI_RGB;
  information.header.biSizeImage = static_cast<DWORD>(layout->pixelBytes);

  PackedBitmap packed{bitCount, std::string(layout->pixelOffset() + layout->pixelBytes, '\0')};
  const int rows =
      GetDIBits(screen, bitmap, 0, static_cast<UINT>(size.height), packed.bytes.data() + layout->pixelOffset(),
                reinterpret_cast<BITMAPINFO*>(&information), DIB_RGB_COLORS);
  if (rows != size.height) {
    return std::nullopt;
  }
  std::memcpy(packed.bytes.data(), &information, layout->pixelOffset());
  return packed;
}

class WindowsMetafile final : public Metafile {
 public:
  explicit WindowsMetafile(MetafileHandle handle) : handle_(std::move(handle)) {}

  std::optional<PictureFrame> frame() override {
    ENHMETAHEADER header{};
    if (GetEnhMetaFileHeader(handle_.get(), sizeof header, &header) == 0) {
      return std::nullopt;
    }
    const RECTL& frame = header.rclFrame;
    return PictureFrame{frame.left, frame.top, frame.right, frame.bottom};
  }

  std::optional<PackedBitmap> draw(PixelSize size, std::chrono::milliseconds limit) override {
    const ScreenContext screen(GetDC(nullptr));
    const Bitmap bitmap(CreateCompatibleBitmap(screen.get(), size.width, size.height));
    if (!bitmap || !paint(screen.get(), bitmap.get(), handle_.get(), size, limit)) {
      return std::nullopt;
    }
    return pack(screen.get(), bitmap.get(), size);
  }

 private:
  MetafileHandle handle_;
};

class WindowsPictures final : public Pictures {
 public:
  ScreenMeasures screen() override {
    const ScreenContext screen(GetDC(nullptr));
    return {GetDeviceCaps(screen.get(), HORZRES), GetDeviceCaps(screen.get(), VERTRES),
            GetDeviceCaps(screen.get(), HORZSIZE), GetDeviceCaps(screen.get(), VERTSIZE)};
  }

  std::unique_ptr<Metafile> openMetafile(std::string_view bytes) override {
    MetafileHandle handle(
        SetEnhMetaFileBits(static_cast<UINT>(bytes.size()), reinterpret_cast<const BYTE*>(bytes.data())));
    return handle ? std::make_unique<WindowsMetafile>(std::move(handle)) : nullptr;
  }
};

}  // namespace

std::unique_ptr<Pictures> windowsPictures() {
  return std::make_unique<WindowsPictures>();
}

}  // namespace vernoxa::desktop
