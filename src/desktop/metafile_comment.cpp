#include <cstdint>

#include "desktop/metafile_check.h"
#include "desktop/metafile_parts.h"

namespace vernoxa::desktop {
namespace {

constexpr std::uint32_t publicComment = 0x43494447;   // "GDIC"
constexpr std::uint32_t newerComment = 0x2B464D45;    // "EMF+"
constexpr std::uint32_t enhancedFormat = 0x464D4520;  // "ENHMETA", as a metafile's own signature
constexpr int deepest = 4;                            // of metafiles within each other

// [MS-EMFPLUS] 2.3: type and flags, size, size of the data after these twelve bytes.
Fault newerRecordsFault(const MetafileRecord& data) {
  constexpr std::size_t fixedBytes = 12;
  for (std::size_t at = 4; data.holds(at, fixedBytes);) {
    const std::uint32_t size = data.number(at + 4);
    if (size < fixedBytes || size % 4 != 0 || !data.holds(at, size) || data.number(at + 8) > size - fixedBytes) {
      return "a newer record within a comment has a wrong size";
    }
    at += size;
  }
  return nullptr;
}

// Each format: signature, version, size, offset from the comment's beginning. Each has bytes of its own: a metafile
// named many times would be looked through as often, and so would the ones within it.
Fault formatsFault(const MetafileRecord& data, int depth) {
  constexpr std::size_t first = 28;
  constexpr std::size_t formatBytes = 16;
  const std::uint32_t formats = data.number(24);
  if (!data.holds(first, formats, formatBytes)) {
    return "a comment counts more formats than it holds";
  }
  std::uint64_t bytesOfAll = 0;
  for (std::size_t at = first; at < first + formats * formatBytes; at += formatBytes) {
    const std::uint32_t bytes = data.number(at + 8);
    const std::uint32_t offset = data.number(at + 12);
    bytesOfAll += bytes;
    if (!data.holds(offset, bytes)) {
      return "a format within a comment lies outside";
    }
    if (bytesOfAll > data.size()) {
      return "formats within a comment overlap";
    }
    if (data.number(at) == enhancedFormat &&
        (depth >= deepest || metafileFault(data.part(offset, bytes), depth + 1).has_value())) {
      return "a metafile within a comment is broken";
    }
  }
  return nullptr;
}

Fault publicFault(const MetafileRecord& data, int depth) {
  constexpr std::uint32_t beginGroup = 2;
  constexpr std::uint32_t multipleFormats = 0x40000004;
  constexpr std::uint32_t olderMetafile = 0x80000001;
  switch (data.number(4)) {
    case beginGroup:
      return data.holds(28, data.number(24), 2) ? nullptr : "the name of a group lies outside";
    case multipleFormats:
      return formatsFault(data, depth);
    case olderMetafile:
      return data.holds(24, data.number(20)) ? nullptr : "an older metafile within a comment lies outside";
    default:
      return nullptr;
  }
}

}  // namespace

Fault commentFault(std::string_view data, int depth) {
  const MetafileRecord comment(data);
  switch (comment.number(0)) {
    case publicComment:
      return publicFault(comment, depth);
    case newerComment:
      return newerRecordsFault(comment);
    default:
      return nullptr;
  }
}

}  // namespace vernoxa::desktop
