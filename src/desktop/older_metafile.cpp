#include "desktop/older_metafile.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "desktop/metafile_bitmap.h"
#include "desktop/metafile_record.h"

namespace vernoxa::desktop {
namespace {

// Sizes and offsets as in [MS-WMF] 2.3. A record: its size in words (four bytes), its function (two), its parameters.
constexpr std::size_t wordBytes = 2;
constexpr std::size_t headerBytes = 18;
constexpr std::size_t parametersAt = 6;
constexpr const char* countsMore = "it counts more than it holds";

// Of the function's number the high byte tells how many words of parameters it has, but where there is a row below.
std::size_t usualBytes(std::uint32_t function) {
  return parametersAt + std::size_t{function >> 8U} * wordBytes;
}

// As many items of `itemBytes` bytes behind their count, then `behind` words.
template <std::size_t countAt, std::size_t itemBytes, std::size_t behind = 0>
Fault counts(const MetafileRecord& record, std::uint32_t) {
  const std::uint64_t bytes = std::uint64_t{record.shortNumber(countAt)} * itemBytes;
  return record.holds(countAt + wordBytes, (bytes + 1) / wordBytes + behind, wordBytes) ? nullptr : countsMore;
}

Fault countsShapes(const MetafileRecord& record, std::uint32_t) {
  constexpr std::size_t first = parametersAt + 2;
  const std::size_t shapes = record.shortNumber(parametersAt);
  std::uint64_t points = 0;
  for (std::size_t at = first; at < first + shapes * 2; at += 2) {
    points += record.shortNumber(at);
  }
  return record.holds(first + shapes * 2, points, 4) ? nullptr : countsMore;
}

Fault writes(const MetafileRecord& record, std::uint32_t) {
  constexpr std::uint32_t hasRectangle = 6;  // opaque or clipped
  const std::size_t first = (record.shortNumber(12) & hasRectangle) != 0 ? 22 : 14;
  return record.holds(first, record.shortNumber(10)) ? nullptr : countsMore;
}

// Each row of the region: how many numbers, top and bottom, the numbers, how many again.
Fault makesRegion(const MetafileRecord& record, std::uint32_t) {
  std::size_t at = 28;
  for (std::uint32_t left = record.shortNumber(16); left > 0; --left) {
    const std::size_t bytes = 8 + std::size_t{record.shortNumber(at)} * 2;
    if (!record.holds(at, bytes)) {
      return countsMore;
    }
    at += bytes;
  }
  return nullptr;
}

template <std::size_t objectAt, std::size_t otherAt = objectAt>
Fault uses(const MetafileRecord& record, std::uint32_t objects) {
  const std::uint32_t last = std::max(record.shortNumber(objectAt), record.shortNumber(otherAt));
  return last == 0 || last < objects ? nullptr : "no such object";
}

template <std::size_t bitmapAt, std::size_t usageAt = 0, std::size_t rowsAt = 0>
Fault hasBitmap(const MetafileRecord& record, std::uint32_t) {
  BitmapInRecord bitmap;
  bitmap.usage = usageAt != 0 ? record.shortNumber(usageAt) : 0;
  bitmap.rows = rowsAt != 0 ? record.shortNumber(rowsAt) : bitmap.rows;
  return packedBitmapFault(record.part(bitmapAt, record.size() - bitmapAt), bitmap);
}

// Without a bitmap it has one word more than before a bitmap.
template <std::size_t bitmapAt>
Fault mayHaveBitmap(const MetafileRecord& record, std::uint32_t objects) {
  return record.size() == usualBytes(record.shortNumber(4)) ? nullptr : hasBitmap<bitmapAt>(record, objects);
}

// In the form of one device: type, width, height, bytes of a row, planes, bits; then the rows.
template <std::size_t bitmapAt, std::size_t between = 0>
Fault mayHaveDeviceBitmap(const MetafileRecord& record, std::uint32_t) {
  const std::uint64_t bytes = std::uint64_t{record.shortNumber(bitmapAt + 4)} * record.shortNumber(bitmapAt + 6);
  return record.size() == usualBytes(record.shortNumber(4)) || record.holds(bitmapAt + 10 + between, bytes)
             ? nullptr
             : "a bitmap lies outside";
}

struct OlderRow {
  std::uint32_t function;
  std::size_t fixedWords;  // without what is counted
  Fault (*check)(const MetafileRecord&, std::uint32_t objects);
};
// clang-format off
constexpr OlderRow olderRows[] = {
    {0x0037, 5, counts<8, 4>}, {0x00F7, 5, counts<8, 4>}, {0x0436, 5, counts<8, 4>},  // palettes
    {0x0228, 5, uses<6, 8>}, {0x0429, 7, uses<6, 8>},                                 // regions and brushes
    {0x012A, 4, uses<6>}, {0x012B, 4, uses<6>}, {0x012C, 4, uses<6>},
    {0x012D, 4, uses<6>}, {0x01F0, 4, uses<6>}, {0x0234, 4, uses<6>},
    {0x0324, 4, counts<6, 4>}, {0x0325, 4, counts<6, 4>}, {0x0538, 4, countsShapes},
    {0x0521, 6, counts<6, 1, 2>}, {0x0A32, 7, writes}, {0x0626, 5, counts<8, 1>},
    {0x02FA, 8, nullptr}, {0x02FB, 12, nullptr}, {0x02FC, 7, nullptr}, {0x06FF, 14, makesRegion},
    {0x0142, 5, hasBitmap<10, 8>}, {0x0940, 11, mayHaveBitmap<22>}, {0x0B41, 13, mayHaveBitmap<26>},
    {0x0D33, 12, hasBitmap<24, 6, 8>}, {0x0F43, 14, hasBitmap<28, 10>},
    {0x0922, 11, mayHaveDeviceBitmap<22>}, {0x0B23, 13, mayHaveDeviceBitmap<26>},
    {0x01F9, 19, mayHaveDeviceBitmap<6, 22>},
};
// clang-format on

Fault recordFault(const MetafileRecord& record, std::uint32_t objects) {
  const std::uint32_t function = record.shortNumber(4);
  const auto* const row = std::find_if(std::begin(olderRows), std::end(olderRows),
                                       [&](const OlderRow& each) { return each.function == function; });
  const bool isUsual = row == std::end(olderRows);
  if (record.size() < (isUsual ? usualBytes(function) : row->fixedWords * wordBytes)) {
    return "too short";
  }
  return isUsual || row->check == nullptr ? nullptr : row->check(record, objects);
}

std::optional<std::string> recordsFault(std::string_view bytes, std::uint32_t objects) {
  constexpr std::uint32_t endsFile = 0;
  for (std::size_t place = headerBytes; place < bytes.size();) {
    const MetafileRecord rest(bytes.substr(place));
    const std::uint64_t size = std::uint64_t{rest.number(0)} * wordBytes;
    Fault fault = size < parametersAt || !rest.holds(0, size) ? "a wrong size" : nullptr;
    const MetafileRecord record(fault == nullptr ? rest.part(0, size) : std::string_view());
    if (fault == nullptr && record.shortNumber(4) == endsFile) {
      return std::nullopt;
    }
    fault = fault == nullptr ? recordFault(record, objects) : fault;
    if (fault != nullptr) {
      return "older record at " + std::to_string(place) + ": " + fault;
    }
    place += record.size();
  }
  return "no older record ends it";
}

}  // namespace

std::optional<std::string> olderMetafileFault(std::string_view bytes) {
  const MetafileRecord header(bytes);
  const bool known = header.size() >= headerBytes && (header.shortNumber(0) == 1 || header.shortNumber(0) == 2) &&
                     header.shortNumber(2) == headerBytes / 2;
  return known ? recordsFault(bytes, header.shortNumber(10)) : "no header of an older metafile";
}

}  // namespace vernoxa::desktop
