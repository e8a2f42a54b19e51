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
  TemporaryFile(Files& files, std::string path) : files_(files), path_(std::move(path)) {}
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
  std::string path_;
};

// Each step can fail without a word: what comes after it says so.
void makeFolders(Files& files, const std::string& cache) {
  files.createFolder(temporaryFolder);
  files.createFolder(cache);
  files.createFolder(cache + "\\Output");
}

}  // namespace

std::optional<PixelSize> frameInPixels(const PictureFrame& frame, const ScreenMeasures& screen) {
  const auto width = distance(frame.left, frame.right, screen.pixelsAcross, screen.millimetresAcross);
  const auto height = distance(frame.top, frame.bottom, screen.pixelsDown, screen.millimetresDown);
  return width && height ? std::optional(PixelSize{*width, *height}) : std::nullopt;
}

bool convertMetafile(const World& world, const std::string& metafilePath, const std::string& bitmapPath) {
  const auto metafile = world.pictures.openMetafile(metafilePath);
  const auto frame = metafile ? metafile->frame() : std::nullopt;
  const auto size = frame ? frameInPixels(*frame, world.pictures.screen()) : std::nullopt;
  return size && writeBitmapFile(world.files, bitmapPath, metafile->draw(*size));
}

std::string saveClipboardPicture(const Services& services) {
  const World& world = services.world;
  const auto clipboard = world.clipboard.open();
  if (!clipboard || !clipboard->hasMetafile()) {
    return {};
  }
  const std::string cache = services.state.link.baseDirectory() + "\\Cache";
  const std::string preview = cache + "\\Output\\Preview.bmp";
  makeFolders(world.files, cache);
  if (!clipboard->saveMetafile(temporaryMetafile)) {
    return {};
  }
  const TemporaryFile temporary(world.files, temporaryMetafile);
  return convertMetafile(world, temporaryMetafile, preview) ? preview : std::string();
}

}  // namespace vernoxa
