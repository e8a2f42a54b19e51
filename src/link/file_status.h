// The "FileStatus" message: which design was opened, saved or closed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/json.h"

namespace vernoxa {

struct Services;

// The message with its "Data" in the order "Status", "FileName", "Pid", "AllegroPath", "PinCount"; a save has no pin
// count, a close the first two only. `fileName` and `pinCount` are texts of the host and converted to the code page
// when they look like UTF-8 Chinese.
Json openedMessage(const Services& services, std::string_view fileName, std::string_view pinCount);
Json savedMessage(const Services& services, std::string_view fileName);
Json closedMessage(const Services& services, std::string_view fileName);

// The paths of a ";" list whose extension, the text after the last ".", is exactly "dsn" or "DSN".
std::vector<std::string> designsAmong(std::string_view paths);
bool isDesign(std::string_view path);

}  // namespace vernoxa
