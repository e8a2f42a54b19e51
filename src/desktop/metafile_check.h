// Looks through an enhanced metafile before the system plays it.
//
// A metafile comes from any program that can write to the clipboard. The system's player follows a false count or
// offset into memory that is not there, and the host ends with it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vernoxa::desktop {

// Which record lies about what, for the log; `nullopt` for a metafile whose every count, length and offset, and every
// number of an object, holds. What it draws is not looked at, and two numbers that no player reads and sound programs
// get wrong are not either: how many records there are, and the last record's size at its own end. `depth` counts the
// metafiles around this one.
std::optional<std::string> metafileFault(std::string_view bytes, int depth = 0);

}  // namespace vernoxa::desktop
