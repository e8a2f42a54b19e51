#include "desktop/metafile_check.h"

#include <cstdint>

#include "desktop/metafile_record.h"
#include "desktop/metafile_rows.h"

namespace vernoxa::desktop {
namespace {

constexpr std::size_t smallestHeader = 88;  // the oldest form; later ones are 100 and 108

// The description and the pixel format follow the numbers of the header. An old header has no numbers for a pixel
// format: its description begins in their place, [MS-EMF] 2.3.4.2.
Fault headerPartsFault(const MetafileRecord& header) {
  const std::uint32_t characters = header.number(60);
  const std::uint32_t description = header.number(64);
  if (characters != 0 && (description < smallestHeader || !header.holds(description, characters, 2))) {
    return "the description lies outside";
  }
  const bool hasPixelFormat = header.size() >= 100 && (characters == 0 || description >= 100);
  const std::uint32_t pixelFormatBytes = hasPixelFormat ? header.number(88) : 0;
  return pixelFormatBytes == 0 || header.holds(header.number(92), pixelFormatBytes) ? nullptr
                                                                                    : "the pixel format lies outside";
}

Fault headerFault(const MetafileRecord& header, std::size_t fileBytes) {
  constexpr std::uint32_t headerType = 1;
  constexpr std::uint32_t signature = 0x464D4520;
  const std::uint32_t bytes = header.number(48);
  if (header.type() != headerType || header.size() < smallestHeader || header.number(40) != signature) {
    return "no header of a metafile";
  }
  if (bytes > fileBytes || bytes % 4 != 0) {
    return "the size of the file is wrong";
  }
  return header.shortNumber(56) == 0 ? "the table of objects is too small" : headerPartsFault(header);
}

// The record at that place, with the size that it says; an empty one if that size is impossible.
MetafileRecord recordAt(std::string_view bytes, std::size_t place) {
  const MetafileRecord rest(bytes.substr(place));
  const std::uint32_t size = rest.number(4);
  return MetafileRecord(size >= smallestRecord && size % 4 == 0 && rest.holds(0, size) ? rest.part(0, size)
                                                                                       : std::string_view());
}

std::string described(std::uint32_t index, std::size_t place, const char* name, Fault fault) {
  std::string text = "record " + std::to_string(index) + " at " + std::to_string(place);
  if (*name != '\0') {
    text.append(" (").append(name).append(")");
  }
  return text.append(": ").append(fault);
}

// Goes through all records behind the header.
std::optional<std::string> recordsFault(std::string_view bytes, const MetafileRecord& header, PlayerState& state) {
  std::uint32_t index = 1;
  std::uint32_t type = header.type();
  for (std::size_t place = header.size(); place < bytes.size(); ++index) {
    const MetafileRecord record = recordAt(bytes, place);
    if (type == endOfFileRecord || record.size() == 0) {
      return described(index, place, "", record.size() == 0 ? "a wrong size" : "behind the end");
    }
    type = record.type();
    const RecordRow* const row = findRecordRow(type);
    if (row == nullptr) {
      return described(index, place, "", "no known type");
    }
    const Fault fault = record.size() < row->fixedBytes ? "too short"
                        : row->check != nullptr         ? row->check(record, state)
                                                        : nullptr;
    if (fault != nullptr) {
      return described(index, place, row->name, fault);
    }
    place += record.size();
  }
  return type == endOfFileRecord ? std::nullopt : std::optional<std::string>("no record ends it");
}

}  // namespace

std::optional<std::string> metafileFault(std::string_view bytes, int depth) {
  const MetafileRecord header = recordAt(bytes, 0);
  if (const Fault fault = headerFault(header, bytes.size())) {
    return fault;
  }
  PlayerState state;
  state.objects.resize(header.shortNumber(56));
  state.depth = depth;
  return recordsFault(bytes.substr(0, header.number(48)), header, state);
}

}  // namespace vernoxa::desktop
