// The host's interpreter, through Tcl's C API.
#pragma once

#include "tcl/script_host.h"

struct Tcl_Interp;

namespace vernoxa::inline tcl {

// For the length of a command. A script may delete the interpreter meanwhile, but Tcl frees none that evaluates:
// whoever evaluates the command holds it (Tcl_Preserve), or Tcl itself would end the process.
class TclScriptHost final : public ScriptHost {
 public:
  explicit TclScriptHost(Tcl_Interp* interp) : interp_(interp) {}

  Evaluation evaluate(const Script& script) override;
  std::optional<std::vector<std::string>> splitList(const std::string& list) override;

 private:
  Tcl_Interp* interp_;
};

}  // namespace vernoxa::inline tcl
