// Turns the drawing that the user copied in the host into the preview picture.
#pragma once

#include <optional>
#include <string>

#include "system/file_path.h"
#include "system/pictures.h"

namespace vernoxa {

struct Services;

// What a frame measures on that screen, whichever of its edges are the larger ones; nothing when that is no size.
std::optional<PixelSize> frameInPixels(const PictureFrame& frame, const ScreenMeasures& screen);

// The size to draw it in: the same, or of the same shape and 64 million points, the most that a picture may have.
PixelSize drawnSize(PixelSize framed);

// Draws a metafile into a bitmap file. True when the whole file was written. A metafile that cannot be read, lies about
// what it holds, or cannot be drawn is refused: a line in the traffic log says why, and no file is left.
bool convertMetafile(const Services& services, const FilePath& metafilePath, const FilePath& bitmapPath);

// Writes "\Cache\Output\Preview.bmp" below the base directory and answers its path; empty when the
// clipboard holds no drawing or any step fails.
FilePath saveClipboardPicture(const Services& services);

}  // namespace vernoxa
