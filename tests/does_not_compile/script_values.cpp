// A value that is known only at run time is no part of the plug-in's own text, and never stands where it would act.
#include <string>

#include "tcl/script.h"

namespace vernoxa {

Script jumpTo(const std::string& page) {
#if CASE == 0
  return Script("JumpToDsn ").quoted(page);
#elif CASE == 1
  return Script("JumpToDsn ").literal(page.c_str());
#elif CASE == 2
  return Script("catch {JumpToDsn ").quoted(page);
#elif CASE == 3
  return Script(" ").bare(page);
#elif CASE == 4
  return Script("JumpToDsn [").bare(page);
#elif CASE == 5
  return Script("JumpToDsn \"").bare(page);
#elif CASE == 6
  return Script("JumpToDsn \"\\\"").bare(page);
#elif CASE == 7
  return Script("JumpToDsn 1;\t").bare(page);
#elif CASE == 8
  return Script("JumpToDsn a\\ ").quoted(page);
#elif CASE == 9
  return Script("[JumpToDsn]").bare(page);
#elif CASE == 10
  return Script("JumpToDsn ").callInstead(page.c_str());
#elif CASE == 11
  return Script("JumpToDsn ").callInstead("Exit;");
#else
  return Script("\tJumpToDsn $").bare(page);
#endif
}

}  // namespace vernoxa
