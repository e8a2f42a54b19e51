#include "desktop/gdi_windows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>

#include "desktop/metafile_extent.h"
#include "desktop/metafile_work.h"

namespace vernoxa::desktop {
namespace {

// In pixels of the picture, in any direction. No picture shows anything so far out, and up to here the system draws
// correctly and quickly. A wider arc writes past the end of its memory under Wine 8; a wider pen takes minutes.
constexpr std::int64_t farthestDrawn = 1 << 22;

// In pixels of the picture, the height or width of a letter. The system keeps a bitmap of each letter, which would take
// gigabytes for larger ones (1.1 GB for one letter under Wine 8).
constexpr std::int64_t largestFont = 1 << 13;

bool isFar(std::int64_t position, std::int64_t limit) {
  return position < -limit || position > limit;
}

LONG within32Bits(std::int64_t position) {
  return static_cast<LONG>(
      std::clamp<std::int64_t>(position, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max()));
}

bool allNear(HDC context, std::span<POINT> corners, POINT origin = {}, std::int64_t limit = farthestDrawn) {
  return LPtoDP(context, corners.data(), static_cast<int>(corners.size())) != 0 &&
         std::none_of(corners.begin(), corners.end(), [origin, limit](const POINT& corner) {
           return isFar(std::int64_t{corner.x} - origin.x, limit) || isFar(std::int64_t{corner.y} - origin.y, limit);
         });
}

// Whether a width and a height stay within the limit in pixels, with the transformation that is in force.
bool isWithin(HDC context, LONG width, LONG height, std::int64_t limit) {
  std::array<POINT, 1> origin{};
  std::array<POINT, 2> ends = {POINT{width, 0}, POINT{0, height}};
  return LPtoDP(context, origin.data(), 1) != 0 && allNear(context, ends, origin.front(), limit);
}

bool hasUsualPen(HDC context) {
  const HGDIOBJ pen = GetCurrentObject(context, OBJ_PEN);
  LONG width = 0;
  LOGPEN simple{};
  std::array<std::byte, 256> extended{};  // with more dashes than a pen may have
  if (GetObjectW(pen, sizeof simple, &simple) == sizeof simple) {
    width = simple.lopnWidth.x;
  } else if (GetObjectW(pen, extended.size(), extended.data()) != 0) {
    width = static_cast<LONG>(reinterpret_cast<const EXTLOGPEN*>(extended.data())->elpWidth);
  }
  return isWithin(context, width, width, farthestDrawn);
}

bool hasUsualFont(HDC context) {
  LOGFONTW font{};
  return GetObjectW(GetCurrentObject(context, OBJ_FONT), sizeof font, &font) == 0 ||
         isWithin(context, font.lfWidth, font.lfHeight, largestFont);
}

std::array<POINT, 4> cornersOf(const DrawnExtent& extent) {
  const LONG left = within32Bits(extent.left);
  const LONG top = within32Bits(extent.top);
  const LONG right = within32Bits(extent.right);
  const LONG bottom = within32Bits(extent.bottom);
  return {POINT{left, top}, POINT{right, top}, POINT{right, bottom}, POINT{left, bottom}};
}

bool drawsFarOut(HDC context, const MetafileRecord& record, const std::optional<DrawnExtent>& extent) {
  if (extent) {
    std::array<POINT, 4> corners = cornersOf(*extent);
    return !allNear(context, corners) || !hasUsualPen(context) || (drawsText(record) && !hasUsualFont(context));
  }
  return drawsPath(record) && !hasUsualPen(context);
}

// The height in pixels.
double rowsOf(HDC context, const DrawnExtent& extent) {
  std::array<POINT, 4> corners = cornersOf(extent);
  LPtoDP(context, corners.data(), static_cast<int>(corners.size()));
  const auto [highest, lowest] =
      std::minmax_element(corners.begin(), corners.end(), [](const POINT& a, const POINT& b) { return a.y < b.y; });
  return static_cast<double>(lowest->y) - static_cast<double>(highest->y);
}

// A small metafile may draw any number of pictures on top of each other, and one record of it may take minutes.
struct Playing {
  ULONGLONG end = 0;
  FilledShapes shapes;
  double work = 0;
  bool over = false;
};

int CALLBACK playRecord(HDC context, HANDLETABLE* objects, const ENHMETARECORD* record, int count, LPARAM parameter) {
  Playing& playing = *reinterpret_cast<Playing*>(parameter);
  playing.over = GetTickCount64() >= playing.end;
  if (playing.over) {
    return FALSE;
  }
  const MetafileRecord bytes(std::string_view(reinterpret_cast<const char*>(record), record->nSize));
  const auto extent = drawnExtent(bytes);
  if (floods(bytes) || drawsFarOut(context, bytes, extent)) {
    return TRUE;
  }
  if (const auto filled = playing.shapes.next(bytes, extent)) {
    playing.work += filled->work(rowsOf(context, filled->extent));
  }
  playing.over = playing.work > mostFillWork;
  if (!playing.over) {
    PlayEnhMetaFileRecord(context, objects, record, static_cast<UINT>(count));
  }
  return playing.over ? FALSE : TRUE;
}

}  // namespace

bool playMetafile(HDC context, HENHMETAFILE metafile, const RECT& whole, std::chrono::milliseconds limit) {
  Playing playing;
  playing.end = GetTickCount64() + static_cast<ULONGLONG>(limit.count());
  EnumEnhMetaFile(context, metafile, playRecord, &playing, &whole);
  return !playing.over;
}

}  // namespace vernoxa::desktop
