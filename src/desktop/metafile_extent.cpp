#include "desktop/metafile_extent.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "desktop/metafile_parts.h"

namespace vernoxa::desktop {
namespace {

std::int64_t signedNumber(const MetafileRecord& record, std::size_t at) {
  return static_cast<std::int32_t>(record.number(at));
}

class Points {
 public:
  void add(std::int64_t x, std::int64_t y) {
    if (!extent_) {
      extent_ = DrawnExtent{x, y, x, y, {x, y}, {x, y}};
    }
    extent_->goTo({x, y});
  }
  const std::optional<DrawnExtent>& extent() const { return extent_; }

 private:
  std::optional<DrawnExtent> extent_;
};

// `count` points; each begins `apart` bytes after the one before.
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

// A rectangle: the offset of a corner, and the offset of width and height.
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
  addPoints(points, record, 40, record.number(36), textBytes);
}

// --- which points each kind of record names -------------------------------------------------------------------------

template <std::uint32_t count>
void corners(Points& points, const MetafileRecord& record) {
  addPoints(points, record, 8, count);
}

void counted(Points& points, const MetafileRecord& record) {
  addPoints(points, record, 28, record.number(24));
}

void countedShort(Points& points, const MetafileRecord& record) {
  addShortPoints(points, record, 28, record.number(24));
}

std::size_t behindShapes(const MetafileRecord& record) {
  return 32 + std::size_t{record.number(24)} * 4;
}

void shapes(Points& points, const MetafileRecord& record) {
  addPoints(points, record, behindShapes(record), record.number(28));
}

void shortShapes(Points& points, const MetafileRecord& record) {
  addShortPoints(points, record, behindShapes(record), record.number(28));
}

template <std::size_t at>
void region(Points& points, const MetafileRecord& record) {
  addRegion(points, record, at);
}

template <std::size_t size>
void bitmap(Points& points, const MetafileRecord& record) {
  addSized(points, record, 24, size);
}

void slantedBitmap(Points& points, const MetafileRecord& record) {
  addPoints(points, record, 24, 3);
}

void text(Points& points, const MetafileRecord& record) {
  addPoints(points, record, 36, 1);
}

void gradient(Points& points, const MetafileRecord& record) {
  addPoints(points, record, 36, record.number(24), 16);
}

// Kinds from the first to the last are alike; one that names no points has no row. Numbers as in [MS-EMF] 2.1.1.
struct NamingRow {
  std::uint32_t first;
  std::uint32_t last;
  void (*add)(Points&, const MetafileRecord&);
};
// clang-format off
constexpr NamingRow namingRows[] = {
    {2, 6, counted}, {56, 56, counted},            // lines and curves
    {7, 8, shapes},
    {85, 89, countedShort}, {92, 92, countedShort},
    {90, 91, shortShapes},
    {15, 15, corners<1>}, {27, 27, corners<1>}, {53, 54, corners<1>},
    {108, 108, corners<1>},                        // a small text
    {29, 30, corners<2>}, {42, 44, corners<2>},    // rectangles
    {45, 47, corners<4>}, {55, 55, corners<4>},    // an ellipse's rectangle, and where its arc begins and ends
    {41, 41, addCircle},
    {71, 71, region<32>}, {72, 72, region<40>}, {73, 74, region<28>}, {75, 75, region<16>},
    {76, 78, bitmap<32>}, {114, 114, bitmap<32>}, {116, 116, bitmap<32>},
    {79, 79, slantedBitmap},
    {80, 80, bitmap<40>}, {81, 81, bitmap<72>},
    {83, 84, text}, {96, 97, addTexts},
    {118, 118, gradient},
};
// clang-format on

constexpr bool eachKindHasOneRow() {
  for (const NamingRow& row : namingRows) {
    for (const NamingRow& other : namingRows) {
      if (row.last < row.first || (&row != &other && row.first <= other.last && other.first <= row.last)) {
        return false;
      }
    }
  }
  return true;
}
static_assert(eachKindHasOneRow());

}  // namespace

void DrawnExtent::goTo(DrawnPoint point) {
  across += static_cast<double>(std::abs(point.x - last.x));
  down += static_cast<double>(std::abs(point.y - last.y));
  left = std::min(left, point.x);
  top = std::min(top, point.y);
  right = std::max(right, point.x);
  bottom = std::max(bottom, point.y);
  last = point;
}

std::optional<DrawnExtent> drawnExtent(const MetafileRecord& record) {
  Points points;
  const auto kind = std::find_if(std::begin(namingRows), std::end(namingRows), [&](const NamingRow& row) {
    return row.first <= record.type() && record.type() <= row.last;
  });
  if (kind != std::end(namingRows)) {
    kind->add(points, record);
  }
  return points.extent();
}

bool drawsPath(const MetafileRecord& record) {
  return record.type() >= 62 && record.type() <= 66;
}

bool floods(const MetafileRecord& record) {
  return record.type() == 53;
}

bool drawsText(const MetafileRecord& record) {
  const std::uint32_t type = record.type();
  return type == 83 || type == 84 || type == 96 || type == 97 || type == 108;
}

}  // namespace vernoxa::desktop
