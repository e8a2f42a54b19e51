#include "desktop/metafile_bitmap.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>

namespace vernoxa::desktop {
namespace {

constexpr std::uint32_t coreHeaderBytes = 12;         // BITMAPCOREHEADER
constexpr std::uint32_t informationHeaderBytes = 40;  // BITMAPINFOHEADER, with which all later ones begin
constexpr std::uint32_t maskBytes = 12;               // of red, green and blue
constexpr std::uint32_t mostTableBits = 8;            // of a pixel that is the number of a colour in a table
constexpr std::uint32_t largestTable = 1U << mostTableBits;
constexpr std::uint64_t mostPacked = 64'000'000;  // pixels; a packed bitmap of a few bytes may claim any number

enum Compression : std::uint32_t { none = 0, runs8 = 1, runs4 = 2, masks = 3, jpeg = 4, png = 5 };

struct Header {
  std::uint32_t bytes;
  std::uint64_t width;
  std::uint64_t height;  // of either direction
  std::uint32_t planes;
  std::uint32_t bitCount;
  std::uint32_t compression = none;
  std::uint32_t imageBytes = 0;
  std::uint32_t colours = 0;

  bool packed() const { return compression == runs8 || compression == runs4; }
  bool foreign() const { return compression == jpeg || compression == png; }
  std::uint64_t rowBytes() const { return (width * bitCount + 31) / 32 * 4; }
};

// Of a number with a sign. A negative height means that the rows come from the top down; the width of a bitmap has no
// sign, and a negative one reads as one that is too large.
std::uint64_t magnitude(std::uint32_t number) {
  return static_cast<std::uint64_t>(std::abs(std::int64_t{std::bit_cast<std::int32_t>(number)}));
}

Header readHeader(const MetafileRecord& bytes) {
  const std::uint32_t headerBytes = bytes.number(0);
  if (headerBytes == coreHeaderBytes) {
    return {.bytes = headerBytes,
            .width = bytes.shortNumber(4),
            .height = bytes.shortNumber(6),
            .planes = bytes.shortNumber(8),
            .bitCount = bytes.shortNumber(10)};
  }
  return {.bytes = headerBytes,
          .width = bytes.number(4),
          .height = magnitude(bytes.number(8)),
          .planes = bytes.shortNumber(12),
          .bitCount = bytes.shortNumber(14),
          .compression = bytes.number(16),
          .imageBytes = bytes.number(20),
          .colours = bytes.number(32)};
}

bool isKnownFormat(const Header& header) {
  switch (header.bitCount) {
    case 0:
      return header.foreign();
    case 1:
      return header.compression == none;
    case 4:
      return header.compression == none || header.compression == runs4;
    case 8:
      return header.compression == none || header.compression == runs8;
    case 16:
    case 32:
      return header.compression == none || header.compression == masks;
    case 24:
      return header.compression == none || header.foreign();
    default:
      return false;
  }
}

// Players go by the number of colours in the header first, whatever the bits of a pixel would need.
std::uint64_t tableBytes(const Header& header, std::uint32_t usage) {
  if (usage == 2 && header.bitCount == 1) {
    return 0;  // a mask
  }
  const std::uint32_t usual = header.bitCount <= mostTableBits && !header.foreign() ? 1U << header.bitCount : 0;
  const std::uint32_t entries = header.colours != 0 ? std::min(header.colours, largestTable) : usual;
  const std::uint32_t colourBytes = header.bytes == coreHeaderBytes ? 3 : 4;
  return std::uint64_t{entries} * (usage == 1 ? 2 : colourBytes);
}

std::uint64_t bytesBeforeTable(const Header& header) {
  return header.compression == masks ? std::max(header.bytes, informationHeaderBytes + maskBytes) : header.bytes;
}

// Whether every run, and every sequence of single pixels, ends within the bits.
bool runsEndWithin(const MetafileRecord& bits, std::uint32_t bitCount) {
  std::size_t index = 0;
  while (bits.holds(index, 2)) {
    const std::uint32_t pair = bits.shortNumber(index);
    const std::uint32_t value = pair >> 8U;
    index += 2;
    if ((pair & 0xFFU) != 0 || value == 0) {
      continue;  // a run, or the end of a row
    }
    if (value == 1) {
      return true;  // the end of the picture
    }
    const std::size_t more = (std::size_t{value} * bitCount + 15) / 16 * 2;  // value 2, a jump, has two bytes too
    if (!bits.holds(index, more)) {
      return false;
    }
    index += more;
  }
  return true;
}

Fault packedFault(const Header& header, std::string_view bits) {
  if (header.width * header.height > mostPacked) {
    return "a packed bitmap is too large";
  }
  if (header.imageBytes == 0 || header.imageBytes > bits.size()) {
    return "a packed bitmap has fewer bytes than it says";
  }
  return runsEndWithin(MetafileRecord(bits.substr(0, header.imageBytes)), header.bitCount)
             ? nullptr
             : "a packed bitmap ends within a run";
}

Fault bitsFault(const Header& header, std::string_view bits, const BitmapInRecord& bitmap) {
  if (header.foreign()) {
    return header.imageBytes <= bits.size() ? nullptr : "a bitmap has fewer bytes than it says";
  }
  if (header.packed()) {
    return bitmap.exact ? "a bitmap that may not be packed is" : packedFault(header, bits);
  }
  const std::uint64_t rows = bits.size() / header.rowBytes();
  if (rows < std::min<std::uint64_t>(header.height, bitmap.rows)) {
    return "a bitmap has fewer bits than its size needs";
  }
  return bitmap.exact && bits.size() > header.rowBytes() * header.height
             ? "a bitmap has more bits than its size has room for"
             : nullptr;
}

// Where records that draw a bitmap say which part of it: the offsets of a corner, of width and height, and of the
// transformation of both, six floats; 0 if there is none. [MS-EMF] 2.3.1
struct TakingRow {
  std::uint32_t type;
  std::size_t corner;
  std::size_t size;
  std::size_t transformation;
};
constexpr TakingRow takingRows[] = {{76, 44, 32, 52}, {77, 44, 100, 52}, {78, 44, 32, 52},   {79, 48, 56, 64},
                                    {80, 32, 40, 0},  {81, 32, 40, 0},   {114, 44, 100, 52}, {116, 44, 100, 52}};

// What is not a number is far, too.
bool isFar(double x, double y) {
  return !(std::abs(x) <= farthestTaken && std::abs(y) <= farthestTaken);
}

bool takesFarPart(const MetafileRecord& record) {
  const auto number = [&](std::size_t at) -> double { return std::bit_cast<std::int32_t>(record.number(at)); };
  const auto* const row = std::find_if(std::begin(takingRows), std::end(takingRows),
                                       [&](const TakingRow& each) { return each.type == record.type(); });
  if (row == std::end(takingRows)) {
    return false;
  }
  for (const double x : {number(row->corner), number(row->corner) + number(row->size)}) {
    for (const double y : {number(row->corner + 4), number(row->corner + 4) + number(row->size + 4)}) {
      const auto factor = [&](std::size_t index) {
        return double{std::bit_cast<float>(record.number(row->transformation + index * 4))};
      };
      if (isFar(x, y) || (row->transformation != 0 && isFar(x * factor(0) + y * factor(2) + factor(4),
                                                            x * factor(1) + y * factor(3) + factor(5)))) {
        return true;
      }
    }
  }
  return false;
}

Fault partsFault(std::string_view headerAndTable, std::string_view bits, const BitmapInRecord& bitmap) {
  const std::size_t headerBytes = headerAndTable.size();
  const Header header = readHeader(MetafileRecord(headerAndTable));
  if ((header.bytes != coreHeaderBytes && header.bytes < informationHeaderBytes) || header.bytes > headerBytes) {
    return "the header of a bitmap has no known size";
  }
  if (header.width == 0 || header.height == 0 || header.width > std::numeric_limits<std::int32_t>::max()) {
    return "a bitmap has no size";
  }
  // Players take what has no colour table for plain rows behind a header of 40 bytes, whatever it says.
  const bool isOddMask = bitmap.usage == 2 && (header.compression != none || header.bytes < informationHeaderBytes);
  if (header.planes != 1 || !isKnownFormat(header) || bitmap.usage > 2 || isOddMask) {
    return "a bitmap is of no known format";
  }
  // Some players read a colour table even where there is none, from the bytes that follow.
  const std::uint64_t room = bitmap.usage == 2 ? headerBytes + bits.size() : headerBytes;
  if (bytesBeforeTable(header) > headerBytes || bytesBeforeTable(header) + tableBytes(header, bitmap.usage) > room) {
    return "the colours of a bitmap lie outside";
  }
  return bitsFault(header, bits, bitmap);
}

}  // namespace

bool hasNoBitmap(const MetafileRecord& record, std::size_t place) {
  return record.number(place) == 0 && record.number(place + 4) == 0 && record.number(place + 8) == 0 &&
         record.number(place + 12) == 0;
}

Fault missingBitmapFault(const MetafileRecord& record) {
  const auto isFar = [&](std::size_t upperHalf) {
    return record.shortNumber(upperHalf) != 0 && record.shortNumber(upperHalf) != 0xFFFF;
  };
  return isFar(10) || isFar(14) ? "it has no bitmap, and bounds far away" : nullptr;
}

Fault bitmapFault(const MetafileRecord& record, const BitmapInRecord& bitmap) {
  const std::uint32_t headerAt = record.number(bitmap.place);
  const std::uint32_t headerBytes = record.number(bitmap.place + 4);
  const std::uint32_t bitsAt = record.number(bitmap.place + 8);
  const std::uint32_t bitsBytes = record.number(bitmap.place + 12);
  if (!record.holds(headerAt, headerBytes) || !record.holds(bitsAt, bitsBytes)) {
    return "a bitmap lies outside";
  }
  if (takesFarPart(record)) {
    return "a part of the bitmap that it draws is far away";
  }
  return partsFault(record.part(headerAt, headerBytes), record.part(bitsAt, bitsBytes), bitmap);
}

Fault packedBitmapFault(std::string_view bytes, const BitmapInRecord& bitmap) {
  const Header header = readHeader(MetafileRecord(bytes));
  const std::size_t end =
      std::min<std::size_t>(bytesBeforeTable(header) + tableBytes(header, bitmap.usage), bytes.size());
  return partsFault(bytes.substr(0, end), bytes.substr(end), bitmap);
}

}  // namespace vernoxa::desktop
