// An interpreter that knows nothing but the plug-in's commands and the host's procedures.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "support/tcl_interp_tcl.h"

namespace vernoxa::fuzz {

// Names of the host's procedures.
using Procedures = std::set<std::string, std::less<>>;

// One interpreter for all inputs: making one takes longer than most inputs.
class RecordingHost {
 public:
  RecordingHost();

  // What every procedure of the host answers from now on.
  void answerWith(std::string_view answer) { answer_ = answer; }
  // Every recorded call must be one of these or Tcl's own `list`.
  void requireOnly(const Procedures& allowed) const;

  TclInterp interp;

 private:
  std::string answer_;
};

RecordingHost& recordingHost();

}  // namespace vernoxa::fuzz
