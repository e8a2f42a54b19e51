// A value that is known only at run time is no part of the plug-in's own text, and never stands where it would act.
#include <string>

#include "tcl/script.h"

namespace vernoxa {

constexpr const char* starts[] = {"JumpToDsn ",     "catch {JumpToDsn ", " ",           "JumpToDsn [",
                                  "JumpToDsn \"",   "JumpToDsn \"\\\"",  "[JumpToDsn]", "JumpToDsn 1;\t",
                                  "JumpToDsn a\\ ", "\tJumpToDsn $"};
constexpr const char* texts[] = {"{", "\\a {", "} {"};

Script jumpTo(const std::string& page) {
#if CASE < 10
  return Script(starts[CASE]).bare(page);
#elif CASE == 10
  return Script("JumpToDsn ").literal(page.c_str());
#elif CASE == 11
  return Script("JumpToDsn ").callInstead(page.c_str());
#elif CASE == 12
  return Script("JumpToDsn ").callInstead("Exit;");
#elif CASE == 13
  return Script("JumpToDsn ").callInstead("");
#else
  return Script("JumpToDsn ").literal(texts[CASE - 14]).bare(page);
#endif
}

}  // namespace vernoxa
