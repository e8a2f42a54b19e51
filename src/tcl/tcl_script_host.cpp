#include "tcl/tcl_script_host.h"

#include <tcl.h>

namespace vernoxa::inline tcl {

Evaluation TclScriptHost::evaluate(const Script& script) {
  if (Tcl_InterpDeleted(interp_) != 0) {
    return {};
  }
  const int status = Tcl_Eval(interp_, script.text().c_str());
  return {status == TCL_OK, Tcl_GetStringResult(interp_)};
}

std::optional<std::vector<std::string>> TclScriptHost::splitList(const std::string& list) {
  int count = 0;
  const char** elements = nullptr;
  if (Tcl_SplitList(nullptr, list.c_str(), &count, &elements) != TCL_OK) {
    return std::nullopt;
  }
  struct Release {
    const char** elements;
    ~Release() { Tcl_Free(static_cast<char*>(static_cast<void*>(elements))); }
  } const release{elements};
  return std::vector<std::string>(elements, elements + count);
}

}  // namespace vernoxa::inline tcl
