#include "desktop/clipboard_picture.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "desktop/bitmap_file.h"
#include "desktop/metafile_check.h"
#include "desktop/older_metafile.h"
#include "system/clock.h"
#include "system/files.h"
#include "system/log.h"
#include "system/shared_path.h"
#include "system/temporary_file.h"
#include "text/text_converter.h"

namespace vernoxa::desktop {
namespace {

constexpr const char* temporaryFolder = "C:/Temp";
constexpr const char* temporaryMetafile = "C:/Temp/test.emf";
constexpr float hundredthsPerMillimetre = 100;
constexpr std::chrono::seconds longestDrawing(10);  // the host waits meanwhile
constexpr int mostPoints = 64'000'000;              // of a picture: 256 MB at the depth of most screens

// Single precision, and each edge cut to whole pixels by itself: the companion relies on the sizes that this gives.
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

// A failure here is not reported: the steps that follow fail then, and report it.
void makeFolders(Files& files, const FilePath& cache) {
  files.createFolder(FilePath::fromUtf8(temporaryFolder));
  files.createFolder(cache);
  files.createFolder(cache / "Output");
}

std::string sizeText(PixelSize size) {
  return std::to_string(size.width) + " x " + std::to_string(size.height);
}

}  // namespace

std::unique_ptr<ClipboardAccess> openClipboard(Clipboard& clipboard, Clock& clock) {
  constexpr int pauses = 10;
  constexpr std::chrono::milliseconds pause(20);
  auto opened = clipboard.open();
  for (int done = 0; !opened && done < pauses; ++done) {
    clock.sleep(pause);
    opened = clipboard.open();
  }
  return opened;
}

std::optional<PixelSize> frameInPixels(const PictureFrame& frame, const ScreenMeasures& screen) {
  const auto width = distance(frame.left, frame.right, screen.pixelsAcross, screen.millimetresAcross);
  const auto height = distance(frame.top, frame.bottom, screen.pixelsDown, screen.millimetresDown);
  return width && height ? std::optional(PixelSize{*width, *height}) : std::nullopt;
}

PixelSize drawnSize(PixelSize framed) {
  const double width = framed.width;
  const double height = framed.height;
  const double scale = std::min(1.0, std::sqrt(mostPoints / (width * height)));
  const int across = std::clamp(static_cast<int>(width * scale), 1, mostPoints);
  const int down = std::clamp(static_cast<int>(height * scale), 1, mostPoints);
  return {across, down};
}

// Why there is no bitmap file, for the log; empty when it was written whole.
std::string ClipboardPicture::conversionFailure(const FilePath& metafilePath, const FilePath& bitmapPath) const {
  // Read only once, so that nobody can change it between the check and the drawing.
  const auto bytes = files_.read(metafilePath);
  if (!bytes) {
    return "it cannot be read";
  }
  if (const auto fault = metafileFault(*bytes)) {
    return *fault;
  }
  const auto metafile = pictures_.openMetafile(*bytes);
  const auto frame = metafile ? metafile->frame() : std::nullopt;
  const auto framed = frame ? frameInPixels(*frame, pictures_.screen()) : std::nullopt;
  if (!framed) {
    return "it has no size";
  }
  const PixelSize size = drawnSize(*framed);
  const auto bitmap = metafile->draw(size, longestDrawing);
  if (!bitmap) {
    return "no room or time to draw " + sizeText(size);
  }
  return writeBitmapFile(files_, processes_, bitmapPath, *bitmap)
             ? std::string()
             : "not written: " + converter_.utf8ToAnsi(bitmapPath.utf8());
}

bool ClipboardPicture::convert(const FilePath& metafilePath, const FilePath& bitmapPath) const {
  const std::string failure = conversionFailure(metafilePath, bitmapPath);
  if (!failure.empty()) {
    logs_.openTraffic().writeLine("no picture of the metafile: " + failure);
  }
  return failure.empty();
}

FilePath ClipboardPicture::save() const {
  const auto clipboard = openClipboard(clipboard_, clock_);
  if (!clipboard || !clipboard->hasMetafile()) {
    return {};
  }
  const auto older = clipboard->olderMetafile();
  if (const auto fault = older ? olderMetafileFault(*older) : std::nullopt) {
    logs_.openTraffic().writeLine("no picture of the metafile: " + *fault);
    return {};
  }
  const FilePath cache = project_.get() / "Cache";
  const FilePath preview = cache / "Output" / "Preview.bmp";
  const FilePath metafile = FilePath::fromUtf8(temporaryMetafile);
  makeFolders(files_, cache);
  // Removes it also if only a part of it was saved.
  const TemporaryFile temporary(files_, metafile);
  if (!clipboard->saveMetafile(metafile)) {
    logs_.openTraffic().writeLine("no picture of the metafile: it cannot be saved");
    return {};
  }
  return convert(metafile, preview) ? preview : FilePath();
}

}  // namespace vernoxa::desktop
