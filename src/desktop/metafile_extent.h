// How far a record of a metafile draws.
#pragma once

#include <cstdint>
#include <optional>

#include "desktop/metafile_record.h"

namespace vernoxa::desktop {

// In points of the picture, in any direction. No picture shows what lies so far out, and the system's drawing is
// correct and quick up to here: an arc that is wider writes behind its own memory under Wine 8, a pen that is wider
// takes minutes.
constexpr std::int64_t farthestDrawn = 1 << 22;

// In points of the picture, the height or width of a letter: the system keeps a map of each letter's points, which
// takes gigabytes for larger ones (1.1 GB for one letter under Wine 8).
constexpr std::int64_t largestFont = 1 << 13;

// In the record's own units, before any transformation; left <= right and top <= bottom.
struct DrawnExtent {
  std::int64_t left = 0;
  std::int64_t top = 0;
  std::int64_t right = 0;
  std::int64_t bottom = 0;
};

// Holds every point that the record names; `nullopt` for one that names none. The record has been looked through
// (metafile_check.h). What a pen or a font adds is not in it.
std::optional<DrawnExtent> drawnExtent(const MetafileRecord& record);

// It draws, or makes an outline of, a path whose points came in records before it.
bool drawsPath(const MetafileRecord& record);

bool drawsText(const MetafileRecord& record);

}  // namespace vernoxa::desktop
