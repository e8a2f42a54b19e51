// Turns the drawing that the user copied in the host into the preview picture.
#pragma once

#include <optional>
#include <string>

#include "core/pictures.h"

namespace vernoxa {

struct Services;
struct World;

// What a frame measures on that screen, whichever of its edges are the larger ones; nothing when that is no size.
std::optional<PixelSize> frameInPixels(const PictureFrame& frame, const ScreenMeasures& screen);

// Draws a metafile into a bitmap file. False when it cannot be read, drawn or written.
bool convertMetafile(const World& world, const FilePath& metafilePath, const FilePath& bitmapPath);

// Writes "\Cache\Output\Preview.bmp" below the base directory and answers its path; empty when the
// clipboard holds no drawing or any step fails.
FilePath saveClipboardPicture(const Services& services);

}  // namespace vernoxa
