// Comments of a metafile: the public ones, which players look into, and drawings in the newer form of records.
#pragma once

#include <string_view>

#include "desktop/metafile_record.h"

namespace vernoxa::desktop {

// Of the bytes that a comment record counts, [MS-EMF] 2.3.3. What no known program is named for may be anything.
// `depth` counts the metafiles around the comment's own: a comment may hold another one.
Fault commentFault(std::string_view data, int depth);

}  // namespace vernoxa::desktop
