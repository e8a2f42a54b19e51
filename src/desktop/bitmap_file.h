// Bitmap files: a file header, then the packed bitmap (wingdi.h, BITMAPFILEHEADER and BITMAPINFOHEADER).
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "system/file_path.h"
#include "system/pictures.h"

namespace vernoxa::inline system {
class Files;
class Processes;
}  // namespace vernoxa::inline system

namespace vernoxa::desktop {

constexpr std::size_t bitmapInformationBytes = 40;  // BITMAPINFOHEADER

// Bytes of the parts of an uncompressed bitmap. Each row fills whole groups of four bytes.
struct BitmapLayout {
  std::size_t paletteBytes = 0;  // four bytes for each colour; none above 8 bits
  std::size_t pixelBytes = 0;
  std::size_t pixelOffset() const { return bitmapInformationBytes + paletteBytes; }
};

// `nullopt` for a size that is not positive, and for one whose file would be too long: many programs read the length as
// a signed 32-bit number.
std::optional<BitmapLayout> bitmapLayout(PixelSize size, int bitCount);

std::size_t paletteBytes(int bitCount);

// False if the file cannot be written whole; then no part of it is left, and a former file stays.
bool writeBitmapFile(Files& files, Processes& processes, const FilePath& path, const PackedBitmap& bitmap);

}  // namespace vernoxa::desktop
