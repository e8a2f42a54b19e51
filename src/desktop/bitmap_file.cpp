#include "desktop/bitmap_file.h"

#include <cstdint>
#include <limits>

#include "system/files.h"
#include "system/whole_file.h"

namespace vernoxa::desktop {
namespace {

constexpr std::size_t fileHeaderBytes = 14;  // BITMAPFILEHEADER
constexpr std::size_t largestFile = std::numeric_limits<std::int32_t>::max();

void appendNumber(std::string& bytes, std::size_t value, int width) {
  for (int index = 0; index < width; ++index) {
    bytes.push_back(static_cast<char>(value & 0xFFU));
    value >>= 8U;
  }
}

std::string fileHeader(const PackedBitmap& bitmap) {
  std::string header = "BM";
  appendNumber(header, bitmap.bytes.size() + fileHeaderBytes, 4);
  appendNumber(header, 0, 4);  // reserved
  appendNumber(header, fileHeaderBytes + bitmapInformationBytes + paletteBytes(bitmap.bitCount), 4);
  return header;
}

}  // namespace

std::size_t paletteBytes(int bitCount) {
  return bitCount <= 8 ? std::size_t{4} << static_cast<unsigned>(bitCount) : 0;
}

std::optional<BitmapLayout> bitmapLayout(PixelSize size, int bitCount) {
  if (size.width <= 0 || size.height <= 0) {
    return std::nullopt;
  }
  const std::size_t rowBits = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(bitCount);
  const std::size_t rowBytes = (rowBits + 31) / 32 * 4;
  const std::size_t height = static_cast<std::size_t>(size.height);
  const std::size_t palette = paletteBytes(bitCount);
  if (rowBytes > (largestFile - fileHeaderBytes - bitmapInformationBytes - palette) / height) {
    return std::nullopt;
  }
  return BitmapLayout{palette, rowBytes * height};
}

bool writeBitmapFile(Files& files, Processes& processes, const FilePath& path, const PackedBitmap& bitmap) {
  return writeWholeFile(files, processes, path, WhenHeld::writeInPlace,
                        [&](OutputFile& file) { return file.write(fileHeader(bitmap)) && file.write(bitmap.bytes); });
}

}  // namespace vernoxa::desktop
