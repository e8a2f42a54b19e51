// Device-independent bitmaps within the records of a metafile.
#pragma once

#include <cstdint>
#include <limits>

#include "desktop/metafile_record.h"

namespace vernoxa::desktop {

// What a record tells of its bitmap.
struct BitmapInRecord {
  std::size_t place = 0;  // in the record, of four numbers: where the header is and how long, and the same of the bits
  std::uint32_t usage = 0;  // of its colour table: 0 colours, 1 indices into a palette, 2 there is none
  std::uint32_t rows = std::numeric_limits<std::uint32_t>::max();  // that the bits have at most
  bool exact = false;  // the bits are copied whole, into as much memory as the header asks for
};

// All four numbers are 0: the record has no bitmap.
bool hasNoBitmap(const MetafileRecord& record, std::size_t place);

// Some players take the record's own beginning, its bounds included, for the bitmap that is missing. Within the usual
// bounds that is none that could be drawn.
Fault missingBitmapFault(const MetafileRecord& record);

// Header, colour table and bits, each within the record and as long as the header says.
Fault bitmapFault(const MetafileRecord& record, const BitmapInRecord& bitmap);

}  // namespace vernoxa::desktop
