// Checks an enhanced metafile before the system plays it.
//
// Any program can put a metafile on the clipboard. The system's player follows a wrong count or offset into memory that
// does not exist, and that ends the host.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vernoxa::desktop {

// Which record is wrong and why, for the log; `nullopt` if every count, length, offset and object number is right. What
// the metafile draws is not checked, nor are two numbers that no player reads and correct programs get wrong: the
// number of records, and the size at the end of the last record. `depth` counts the metafiles around this one.
std::optional<std::string> metafileFault(std::string_view bytes, int depth = 0);

}  // namespace vernoxa::desktop
