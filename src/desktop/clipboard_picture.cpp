#include "desktop/clipboard_picture.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <utility>

#include "core/clipboard.h"
#include "core/files.h"
#include "core/services.h"
#include "core/state.h"
#include "core/world.h"
#include "desktop/bitmap_file.h"

namespace vernoxa {
namespace {

constexpr const char* temporaryFolder = "C:/Temp";
constexpr const char* temporaryMetafile = "C:/Temp/test.emf";
constexpr float hundredthsPerMillimetre = 100;

// Single precision and each edge cut on its own: the companion counts on the pixels that this gives.
std::optional<std::int64_t> edgeInPixels(int edge, int pixels, int millimetres) {
  const float position = static_cast<float>(edge) * static_cast<float>(pixels) /
                         (static_cast<float>(millimetres) * hundredthsPerMillimetre);
  if (!(std::abs(position) < static_cast<float>(std::numeric_limits<int>::max()))) {
    return std::nullopt;  // a screen without a size, or a frame larger than any bitmap
  }
  return static_cast<std::int64_t>(position);
}

std::optional<int> distance(int first, int second, int pixels, int millimetres) {
  const auto from = edgeInPixels(first, pixels, millimetres);
  const auto to = edgeInPixels(second, pixels, millimetres);
  const std::int64_t between = from && to ? std::abs(*from - *to) : 0;
  return between > 0 && between <= std::numeric_limits<int>::max() ? std::optional(static_cast<int>(between))
                                                                   : std::nullopt;
}

class TemporaryFile {
 public:
  TemporaryFile(Files& files, FilePath path) : files_(files), path_(std::move(path)) {}
  ~TemporaryFile() {
    try {
      files_.removeFile(path_);
    } catch (...) {
      return;  // it stays until the next picture; a destructor has nobody to tell
    }
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

 private:
  Files& files_;
  FilePath path_;
};

// Each step can fail without a word: what comes after it says so.
void makeFolders(Files& files, const FilePath& cache) {
  files.createFolder(FilePath::fromUtf8(temporaryFolder));
  files.createFolder(cache);
  files.createFolder(cache / "Output");
}

}  // namespace

std::optional<PixelSize> frameInPixels(const PictureFrame& frame, const ScreenMeasures& screen) {
  const auto width = distance(frame.left, frame.right, screen.pixelsAcross, screen.millimetresAcross);
  const auto height = distance(frame.top, frame.bottom, screen.pixelsDown, screen.millimetresDown);
  return width && height ? std::optional(PixelSize{*width, *height}) : std::nullopt;
}

bool convertMetafile(const World& world, const FilePath& metafilePath, const FilePath& bitmapPath) {
  const auto metafile = world.pictures.openMetafile(metafilePath);
  const auto frame = metafile ? metafile->frame() : std::nullopt;
  const auto size = frame ? frameInPixels(*frame, world.pictures.screen()) : std::nullopt;
  return size && writeBitmapFile(world.files, bitmapPath, metafile->draw(*size));
}

FilePath saveClipboardPicture(const Services& services) {
  const World& world = services.world;
  const auto clipboard = world.clipboard.open();
  if (!clipboard || !clipboard->hasMetafile()) {
    return {};
  }
  const FilePath cache = services.state.link.baseDirectory() / "Cache";
  const FilePath preview = cache / "Output" / "Preview.bmp";
  const FilePath metafile = FilePath::fromUtf8(temporaryMetafile);
  makeFolders(world.files, cache);
  if (!clipboard->saveMetafile(metafile)) {
    return {};
  }
  const TemporaryFile temporary(world.files, metafile);
  return convertMetafile(world, metafile, preview) ? preview : FilePath();
}

}  // namespace vernoxa
