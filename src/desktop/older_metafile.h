// Checks a metafile of the older kind (WMF) before the system turns it into an enhanced one, for which it plays it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vernoxa::desktop {

// Which record is wrong and why, for the log; `nullopt` if every size, count and object number is right. The bytes are
// those of a metafile in memory, without the header that files of some programs have before it.
std::optional<std::string> olderMetafileFault(std::string_view bytes);

}  // namespace vernoxa::desktop
