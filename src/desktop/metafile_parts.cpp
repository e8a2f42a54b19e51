#include "desktop/metafile_parts.h"

namespace vernoxa::desktop {
namespace {

enum TextOption : std::uint32_t {
  glyphNumbers = 0x10,  // in the place of characters, two bytes each
  noRectangle = 0x100,
  smallCharacters = 0x200,  // one byte each
  advancesBothWays = 0x2000
};

}  // namespace

Fault textFault(const MetafileRecord& record, std::size_t at, std::size_t characterBytes, bool advancesNeeded) {
  const std::uint32_t characters = record.number(at + 8);
  const std::uint32_t options = record.number(at + 16);
  const std::uint32_t advancesAt = record.number(at + 36);
  if (characters == 0) {
    return nullptr;
  }
  if (!record.holds(record.number(at + 12), characters, (options & glyphNumbers) != 0 ? 2 : characterBytes)) {
    return "a text lies outside";
  }
  const std::size_t advanceBytes = (options & advancesBothWays) != 0 ? 8 : 4;
  return (advancesAt == 0 && !advancesNeeded) || record.holds(advancesAt, characters, advanceBytes)
             ? nullptr
             : "the advances of a text lie outside";
}

Fault smallTextFault(const MetafileRecord& record) {
  constexpr std::size_t rectangleAt = 36;
  const std::uint32_t options = record.number(20);
  const std::size_t first = (options & noRectangle) != 0 ? rectangleAt : rectangleAt + 16;
  return record.holds(first, record.number(16), (options & smallCharacters) != 0 ? 1 : 2) ? nullptr
                                                                                          : "a text lies outside";
}

// [MS-EMF] 2.2.24: size of this header, type, rectangles, their size, bounds; then the rectangles.
Fault regionFault(const MetafileRecord& record, std::size_t at, std::uint32_t bytes) {
  constexpr std::size_t headerBytes = 32;
  constexpr std::size_t rectangleBytes = 16;
  if (!record.holds(at, bytes)) {
    return "a region lies outside";
  }
  const MetafileRecord region(record.part(at, bytes));
  if (region.number(0) != headerBytes || region.number(4) != 1) {
    return "a region is of no known form";
  }
  return region.holds(headerBytes, region.number(8), rectangleBytes) ? nullptr : "a region counts more than it holds";
}

// Corners, then which of them each triangle or rectangle has.
Fault gradientFault(const MetafileRecord& record) {
  constexpr std::size_t first = 36;
  constexpr std::size_t cornerBytes = 16;
  constexpr std::uint32_t triangles = 2;  // the mode; the others are of rectangles
  const std::uint64_t corners = record.number(24);
  const std::uint32_t shapes = record.number(28);
  const std::size_t shapeBytes = record.number(32) == triangles ? 12 : 8;
  if (!record.holds(first, corners, cornerBytes) || !record.holds(first + corners * cornerBytes, shapes, shapeBytes)) {
    return "it counts more than it holds";
  }
  const std::size_t shapesAt = first + static_cast<std::size_t>(corners) * cornerBytes;
  for (std::size_t at = shapesAt; at < shapesAt + shapes * shapeBytes; at += 4) {
    if (record.number(at) >= corners) {
      return "a shape has a corner that is not there";
    }
  }
  return nullptr;
}

}  // namespace vernoxa::desktop
