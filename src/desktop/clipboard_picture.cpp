#include "desktop/clipboard_picture.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "desktop/bitmap_file.h"
#include "desktop/clipboard_opening.h"
#include "desktop/metafile_check.h"
#include "dispatch/services.h"
#include "dispatch/state.h"
#include "system/clipboard.h"
#include "system/files.h"
#include "system/log.h"
#include "system/temporary_file.h"
#include "system/world.h"
#include "text/code_page.h"

namespace vernoxa {
namespace {

constexpr const char* temporaryFolder = "C:/Temp";
constexpr const char* temporaryMetafile = "C:/Temp/test.emf";
constexpr float hundredthsPerMillimetre = 100;
constexpr std::chrono::seconds longestDrawing(10);  // the host waits meanwhile
constexpr double mostPoints = 64'000'000;           // of a picture: 256 MB at the depth of most screens

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

// Each step can fail without a word: what comes after it says so.
void makeFolders(Files& files, const FilePath& cache) {
  files.createFolder(FilePath::fromUtf8(temporaryFolder));
  files.createFolder(cache);
  files.createFolder(cache / "Output");
}

std::string sizeText(PixelSize size) {
  return std::to_string(size.width) + " x " + std::to_string(size.height);
}

// Why there is no bitmap file, for the log; empty when it was written whole.
std::string conversionFailure(const Services& services, const FilePath& metafilePath, const FilePath& bitmapPath) {
  const World& world = services.world;
  // Read once: nobody can change what was looked through before it is played.
  const auto bytes = world.files.read(metafilePath);
  if (!bytes) {
    return "it cannot be read";
  }
  if (const auto fault = metafileFault(*bytes)) {
    return *fault;
  }
  const auto metafile = world.pictures.openMetafile(*bytes);
  const auto frame = metafile ? metafile->frame() : std::nullopt;
  const auto framed = frame ? frameInPixels(*frame, world.pictures.screen()) : std::nullopt;
  if (!framed) {
    return "it has no size";
  }
  const PixelSize size = drawnSize(*framed);
  const auto bitmap = metafile->draw(size, longestDrawing);
  if (!bitmap) {
    return "no room or time to draw " + sizeText(size);
  }
  return writeBitmapFile(world.files, world.processes, bitmapPath, *bitmap)
             ? std::string()
             : "not written: " + services.text.utf8ToAnsi(bitmapPath.utf8());
}

}  // namespace

std::optional<PixelSize> frameInPixels(const PictureFrame& frame, const ScreenMeasures& screen) {
  const auto width = distance(frame.left, frame.right, screen.pixelsAcross, screen.millimetresAcross);
  const auto height = distance(frame.top, frame.bottom, screen.pixelsDown, screen.millimetresDown);
  return width && height ? std::optional(PixelSize{*width, *height}) : std::nullopt;
}

PixelSize drawnSize(PixelSize framed) {
  const double width = framed.width;
  const double height = framed.height;
  if (width * height <= mostPoints) {
    return framed;
  }
  const double scale = std::sqrt(mostPoints / (width * height));
  const int across = static_cast<int>(std::clamp(width * scale, 1.0, mostPoints));
  const int down = static_cast<int>(std::clamp(height * scale, 1.0, mostPoints));
  return {across, down};
}

bool convertMetafile(const Services& services, const FilePath& metafilePath, const FilePath& bitmapPath) {
  const std::string failure = conversionFailure(services, metafilePath, bitmapPath);
  if (!failure.empty()) {
    services.logs.openTraffic().writeLine("no picture of the metafile: " + failure);
  }
  return failure.empty();
}

FilePath saveClipboardPicture(const Services& services) {
  World& world = services.world;
  const auto clipboard = openClipboard(world);
  if (!clipboard || !clipboard->hasMetafile()) {
    return {};
  }
  const FilePath cache = services.state.folder.get() / "Cache";
  const FilePath preview = cache / "Output" / "Preview.bmp";
  const FilePath metafile = FilePath::fromUtf8(temporaryMetafile);
  makeFolders(world.files, cache);
  // Also when it is saved in part, or not at all.
  const TemporaryFile temporary(world.files, metafile);
  if (!clipboard->saveMetafile(metafile)) {
    services.logs.openTraffic().writeLine("no picture of the metafile: it cannot be saved");
    return {};
  }
  return convertMetafile(services, metafile, preview) ? preview : FilePath();
}

}  // namespace vernoxa
