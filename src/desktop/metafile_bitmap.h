// Checks device-independent bitmaps within the records of a metafile.
#pragma once

#include <cstdint>
#include <limits>

#include "desktop/metafile_record.h"

namespace vernoxa::desktop {

// In pixels of a bitmap, in any direction: how far a part of it may reach that a record draws, also after the record's
// own transformation. A width near 2^31 writes past the end of memory under Wine 8.
constexpr double farthestTaken = 1 << 22;

// What a record says about its bitmap.
struct BitmapInRecord {
  std::size_t place = 0;    // of four numbers in the record: offset and size of the header, offset and size of the bits
  std::uint32_t usage = 0;  // of its colour table: 0 colours, 1 indices into a palette, 2 there is none
  std::uint32_t rows = std::numeric_limits<std::uint32_t>::max();  // the most that the bits hold
  bool exact = false;  // the bits are copied whole, into as much memory as the header asks for
};

// True if all four numbers are 0: the record has no bitmap.
bool hasNoBitmap(const MetafileRecord& record, std::size_t place);

// Some players take the beginning of the record, with its bounds, for the missing bitmap. With ordinary bounds that
// gives nothing that can be drawn.
Fault missingBitmapFault(const MetafileRecord& record);

// Header, colour table and bits have to lie within the record and be as long as the header says; the part that the
// record draws has to be near.
Fault bitmapFault(const MetafileRecord& record, const BitmapInRecord& bitmap);

// The same for one whose header, colour table and bits follow each other, as in the older metafiles; without its place.
Fault packedBitmapFault(std::string_view bytes, const BitmapInRecord& bitmap);

}  // namespace vernoxa::desktop
