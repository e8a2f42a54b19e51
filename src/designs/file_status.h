// The "FileStatus" message: which design was opened, saved or closed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/json.h"

namespace vernoxa {

struct Services;

// The name by which messages know a design (code page): the host's path, converted when it looks like UTF-8 Chinese.
// Where the code page lacks a character of it, the short name that the system keeps for the file; empty when there is
// none, with one line in the traffic log for each design: it is not told.
// Made once from what the host gave: the bytes of a converted name can look like UTF-8 too.
std::string designName(const Services& services, std::string_view hostPath);

// The message with its "Data" in the order "Status", "FileName", "Pid", "AllegroPath", "PinCount"; a save has no pin
// count, a close the first two only. `hostPath` and `pinCount` are as the host gave them.
Json openedMessage(const Services& services, std::string_view hostPath, std::string_view pinCount);
Json savedMessage(const Services& services, std::string_view hostPath);
Json closedMessage(const Services& services, std::string_view hostPath);

// Takes the folder of the open project from the companion's answer, which names it in the code page or in UTF-8: the
// cache folders follow it.
void followProject(const Services& services, std::string_view path);

// The paths of a ";" list whose extension, the text after the last ".", is exactly "dsn" or "DSN".
std::vector<std::string> designsAmong(std::string_view paths);
bool isDesign(std::string_view path);

}  // namespace vernoxa
