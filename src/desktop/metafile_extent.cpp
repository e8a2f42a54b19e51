#include "desktop/metafile_extent.h"

#include <algorithm>

namespace vernoxa::desktop {
namespace {

std::int64_t signedNumber(const MetafileRecord& record, std::size_t at) {
  return static_cast<std::int32_t>(record.number(at));
}

class Points {
 public:
  void add(std::int64_t x, std::int64_t y) {
    if (!extent_) {
      extent_ = DrawnExtent{x, y, x, y};
    }
    extent_->left = std::min(extent_->left, x);
    extent_->top = std::min(extent_->top, y);
    extent_->right = std::max(extent_->right, x);
    extent_->bottom = std::max(extent_->bottom, y);
  }
  const std::optional<DrawnExtent>& extent() const { return extent_; }

 private:
  std::optional<DrawnExtent> extent_;
};

// So many points, their distance in bytes apart.
void addPoints(Points& points, const MetafileRecord& record, std::size_t first, std::uint32_t count,
               std::size_t apart = 8) {
  for (std::size_t at = first; at < first + count * apart; at += apart) {
    points.add(signedNumber(record, at), signedNumber(record, at + 4));
  }
}

void addShortPoints(Points& points, const MetafileRecord& record, std::size_t first, std::uint32_t count) {
  for (std::size_t at = first; at < first + std::size_t{count} * 4; at += 4) {
    points.add(static_cast<std::int16_t>(record.shortNumber(at)),
               static_cast<std::int16_t>(record.shortNumber(at + 2)));
  }
}

// A corner, and where its width and height are.
void addSized(Points& points, const MetafileRecord& record, std::size_t corner, std::size_t size) {
  const std::int64_t x = signedNumber(record, corner);
  const std::int64_t y = signedNumber(record, corner + 4);
  points.add(x, y);
  points.add(x + signedNumber(record, size), y + signedNumber(record, size + 4));
}

void addCircle(Points& points, const MetafileRecord& record) {
  const std::int64_t x = signedNumber(record, 8);
  const std::int64_t y = signedNumber(record, 12);
  const std::int64_t radius = record.number(16);
  points.add(x - radius, y - radius);
  points.add(x + radius, y + radius);
}

void addRegion(Points& points, const MetafileRecord& record, std::size_t region) {
  addPoints(points, record, region + 32, record.number(region + 8) * 2);
}

void addTexts(Points& points, const MetafileRecord& record) {
  for (std::size_t at = 40; at < 40 + std::size_t{record.number(36)} * 40; at += 40) {
    addPoints(points, record, at, 1);
  }
}

void addNamed(Points& points, const MetafileRecord& record) {
  switch (record.type()) {
    case 2:  // lines and curves
    case 3:
    case 4:
    case 5:
    case 6:
    case 56:
      return addPoints(points, record, 28, record.number(24));
    case 7:
    case 8:
      return addPoints(points, record, 32 + std::size_t{record.number(24)} * 4, record.number(28));
    case 85:
    case 86:
    case 87:
    case 88:
    case 89:
    case 92:
      return addShortPoints(points, record, 28, record.number(24));
    case 90:
    case 91:
      return addShortPoints(points, record, 32 + std::size_t{record.number(24)} * 4, record.number(28));
    case 15:  // one point
    case 27:
    case 53:
    case 54:
    case 108:  // a small text
      return addPoints(points, record, 8, 1);
    case 29:  // a rectangle
    case 30:
    case 42:
    case 43:
    case 44:
      return addPoints(points, record, 8, 2);
    case 45:  // one, and two points beside its ellipse
    case 46:
    case 47:
    case 55:
      return addPoints(points, record, 8, 4);
    case 41:
      return addCircle(points, record);
    case 71:  // regions
      return addRegion(points, record, 32);
    case 72:
      return addRegion(points, record, 40);
    case 73:
    case 74:
      return addRegion(points, record, 28);
    case 75:
      return addRegion(points, record, 16);
    case 76:  // bitmaps
    case 77:
    case 78:
    case 114:
    case 116:
      return addSized(points, record, 24, 32);
    case 79:
      return addPoints(points, record, 24, 3);
    case 80:
      return addSized(points, record, 24, 40);
    case 81:
      return addSized(points, record, 24, 72);
    case 83:  // texts
    case 84:
      return addPoints(points, record, 36, 1);
    case 96:
    case 97:
      return addTexts(points, record);
    case 118:
      return addPoints(points, record, 36, record.number(24), 16);
    default:
      return;
  }
}

}  // namespace

std::optional<DrawnExtent> drawnExtent(const MetafileRecord& record) {
  Points points;
  addNamed(points, record);
  return points.extent();
}

bool drawsPath(const MetafileRecord& record) {
  return record.type() >= 62 && record.type() <= 66;
}

bool drawsText(const MetafileRecord& record) {
  const std::uint32_t type = record.type();
  return type == 83 || type == 84 || type == 96 || type == 97 || type == 108;
}

}  // namespace vernoxa::desktop
