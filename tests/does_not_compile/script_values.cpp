// A value that is known only at run time is no part of the plug-in's own text.
#include <string>

#include "tcl/script.h"

namespace vernoxa {

Script jumpTo(const std::string& page) {
#ifdef COMPILES
  return Script("JumpToDsn ").quoted(page);
#else
  return Script("JumpToDsn ").literal(page.c_str());
#endif
}

}  // namespace vernoxa
