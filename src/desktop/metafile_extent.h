// How far a record of a metafile draws.
#pragma once

#include <cstdint>
#include <optional>

#include "desktop/metafile_record.h"

namespace vernoxa::desktop {

struct DrawnPoint {
  std::int64_t x = 0;
  std::int64_t y = 0;
};

// In the record's own units, before any transformation; left <= right and top <= bottom.
struct DrawnExtent {
  std::int64_t left = 0;
  std::int64_t top = 0;
  std::int64_t right = 0;
  std::int64_t bottom = 0;
  // From point to point in the record's order: where that begins and ends, and how far it goes in each direction.
  DrawnPoint first{};
  DrawnPoint last{};
  double across = 0;
  double down = 0;

  void goTo(DrawnPoint point);
};

// The rectangle around all points that the record names; `nullopt` if it names none. The record was checked before
// (metafile_check.h). The width of the pen and the size of the font are not included.
std::optional<DrawnExtent> drawnExtent(const MetafileRecord& record);

// Whether the record draws, or turns into an outline, a path whose points came in earlier records.
bool drawsPath(const MetafileRecord& record);

bool drawsText(const MetafileRecord& record);

// Whether the record fills an area from a point up to a colour. Wine 8 goes on from row to row by recursion: 152 bytes
// overran its stack. Programs that draw know their areas and fill those.
bool floods(const MetafileRecord& record);

}  // namespace vernoxa::desktop
