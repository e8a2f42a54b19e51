#include "desktop/metafile_work.h"

#include <algorithm>

namespace vernoxa::desktop {
namespace {

// Numbers as in [MS-EMF] 2.1.1.
constexpr std::uint32_t beginsPath = 59;
constexpr std::uint32_t fillsPath = 62;
constexpr std::uint32_t strokesAndFillsPath = 63;
constexpr std::uint32_t clipsToPath = 67;

bool fillsItsPoints(const MetafileRecord& record) {
  const std::uint32_t type = record.type();
  return type == 3 || type == 8 || type == 86 || type == 91;  // polygons, one or many, of long or short numbers
}

// On average, of a way of that length that goes to and fro between two edges.
double crossingsOf(double length, std::int64_t edge, std::int64_t otherEdge) {
  return length / static_cast<double>(std::max<std::int64_t>(otherEdge - edge, 1));
}

// Rows or columns, whichever are crossed more often: the picture may be turned.
FilledShape shapeOf(const DrawnExtent& extent) {
  return {extent, std::max(crossingsOf(extent.across, extent.left, extent.right),
                           crossingsOf(extent.down, extent.top, extent.bottom))};
}

}  // namespace

std::optional<FilledShape> FilledShapes::next(const MetafileRecord& record, const std::optional<DrawnExtent>& extent) {
  if (record.type() == beginsPath) {
    path_.reset();
  }
  if (extent) {
    extendPath(*extent);
    return fillsItsPoints(record) ? std::optional(shapeOf(*extent)) : std::nullopt;
  }
  // One that is only stroked takes no more time than its lines.
  const bool fills = record.type() == fillsPath || record.type() == strokesAndFillsPath || record.type() == clipsToPath;
  return fills && path_ ? std::optional(shapeOf(*path_)) : std::nullopt;
}

void FilledShapes::extendPath(const DrawnExtent& extent) {
  if (!path_) {
    path_ = extent;
    return;
  }
  path_->goTo(extent.first);
  path_->left = std::min(path_->left, extent.left);
  path_->top = std::min(path_->top, extent.top);
  path_->right = std::max(path_->right, extent.right);
  path_->bottom = std::max(path_->bottom, extent.bottom);
  path_->across += extent.across;
  path_->down += extent.down;
  path_->last = extent.last;
}

}  // namespace vernoxa::desktop
