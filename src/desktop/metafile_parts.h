// Checks texts, regions, gradients and comments within the records of a metafile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "desktop/metafile_record.h"

namespace vernoxa::desktop {

constexpr std::size_t textBytes = 40;  // of the description of a text, [MS-EMF] 2.2.5

// `at` is the offset of the description: reference point, number of characters, their offset, options, rectangle,
// offset of the advances. Players differ on whether a text may come without advances.
Fault textFault(const MetafileRecord& record, std::size_t at, std::size_t characterBytes, bool advancesNeeded);

// For a record that holds a short text and nothing else.
Fault smallTextFault(const MetafileRecord& record);

// For a region of `bytes` bytes at `at`.
Fault regionFault(const MetafileRecord& record, std::size_t at, std::uint32_t bytes);

// For a record that fills shapes with a gradient between the colours of their corners.
Fault gradientFault(const MetafileRecord& record);

// in metafile_comment.cpp: of the bytes that a comment record counts, [MS-EMF] 2.3.3. Players look into the public
// comments and into drawings in the newer form of records; what no known program is named for may be anything.
// `depth` counts the metafiles around the comment's own: a comment may hold another one.
Fault commentFault(std::string_view data, int depth);

}  // namespace vernoxa::desktop
