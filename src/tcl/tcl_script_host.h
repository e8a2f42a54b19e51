// The host's interpreter, through Tcl's C API.
#pragma once

#include "tcl/script_host.h"

struct Tcl_Interp;

namespace vernoxa::inline tcl {

// Keeps the interpreter's memory valid as long as this object exists, even if a script deletes the interpreter.
class TclScriptHost final : public ScriptHost {
 public:
  explicit TclScriptHost(Tcl_Interp* interp);
  ~TclScriptHost() override;
  TclScriptHost(const TclScriptHost&) = delete;
  TclScriptHost& operator=(const TclScriptHost&) = delete;

  Evaluation evaluate(const Script& script) override;
  std::optional<std::vector<std::string>> splitList(const std::string& list) override;

 private:
  Tcl_Interp* interp_;
};

}  // namespace vernoxa::inline tcl
