// What a Tcl command of the plug-in is given and gives back.
#pragma once

#include <string>

#include "tcl/arguments.h"

namespace vernoxa::inline tcl {

class ScriptHost;

// Valid for the length of one call, on the host's thread.
struct CommandCall {
  const Arguments& arguments;
  ScriptHost& host;
};

constexpr int commandDone = 0;     // TCL_OK
constexpr int commandError = 1;    // TCL_ERROR
constexpr int commandFailed = -1;  // not a code of Tcl's: tells the host scripts that an exception was caught

struct CommandResult {
  std::string text;  // becomes Tcl's result as it is, up to its first NUL byte
  int status = commandDone;
};

}  // namespace vernoxa::inline tcl
