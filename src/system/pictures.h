// Pictures that the system draws: enhanced metafiles, and bitmaps with the colour depth of the screen.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vernoxa::inline system {

// Edges in hundredths of a millimetre, as a metafile's header gives them; any of them may be the larger one.
struct PictureFrame {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

struct PixelSize {
  int width = 0;
  int height = 0;
};

struct ScreenMeasures {
  int pixelsAcross = 0;
  int pixelsDown = 0;
  int millimetresAcross = 0;
  int millimetresDown = 0;
};

// A device-independent bitmap as one block: information header, palette, rows from the bottom up.
struct PackedBitmap {
  int bitCount = 0;  // of a pixel: 1, 4, 8, 16, 24 or 32
  std::string bytes;
};

class Metafile {
 public:
  virtual ~Metafile() = default;
  // `nullopt` if the header cannot be read.
  virtual std::optional<PictureFrame> frame() = 0;
  // Draws it onto a white bitmap of that size with the colour depth of the screen. `nullopt` if the system has no
  // memory for that bitmap, or if all records together take longer than `limit`.
  virtual std::optional<PackedBitmap> draw(PixelSize size, std::chrono::milliseconds limit) = 0;
};

class Pictures {
 public:
  virtual ~Pictures() = default;
  virtual ScreenMeasures screen() = 0;
  // From the bytes of an enhanced metafile that was checked before (desktop/metafile_check.h). Null if the system does
  // not accept them.
  virtual std::unique_ptr<Metafile> openMetafile(std::string_view bytes) = 0;
};

}  // namespace vernoxa::inline system
