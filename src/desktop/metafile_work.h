// How much work the shapes are that a metafile fills.
#pragma once

#include <cstdint>
#include <optional>

#include "desktop/metafile_extent.h"
#include "desktop/metafile_record.h"

namespace vernoxa::desktop {

// Of all shapes of a picture together: about five seconds under Wine 8, whose player takes the square of the crossings
// for each row (20,000 points without order took more than 90 seconds). A usual shape needs a few thousand.
constexpr double mostFillWork = 5e9;

struct FilledShape {
  DrawnExtent extent;
  double crossings = 0;  // of its outline with each row, on average

  // For a height in pixels of the picture.
  double work(double rows) const { return crossings * crossings * rows; }
};

// Follows the records of a metafile, each of them checked before (metafile_check.h).
class FilledShapes {
 public:
  // The shape that is filled, or becomes the clipping region, when the record is played; `nullopt` if none is. `extent`
  // is what the record names itself; a path consists of the records before it.
  std::optional<FilledShape> next(const MetafileRecord& record, const std::optional<DrawnExtent>& extent);

 private:
  void extendPath(const DrawnExtent& extent);

  std::optional<DrawnExtent> path_;
};

}  // namespace vernoxa::desktop
