// The plug-in's commands in an interpreter that knows nothing but the host's procedures, on a fake operating system.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "plugin/plug_in.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"

namespace vernoxa::fuzz {

// Names of the host's procedures.
using Procedures = std::set<std::string, std::less<>>;

// One interpreter for all inputs: making one takes longer than most inputs.
class RecordingHost {
 public:
  RecordingHost();

  // What every procedure of the host answers from now on.
  void answerWith(std::string_view answer) { answer_ = answer; }
  // Runs one command of the plug-in at global level. Gives Tcl's status.
  int call(const Words& words) const;
  std::string result() const;
  // Every recorded call must be one of these or Tcl's own `list`.
  void requireOnly(const Procedures& allowed) const;

  TclInterp interp;

 private:
  std::string answer_;
};

RecordingHost& recordingHost();

// A fresh load for one input.
class LoadedPlugIn {
 public:
  LoadedPlugIn();
  ~LoadedPlugIn();
  LoadedPlugIn(const LoadedPlugIn&) = delete;
  LoadedPlugIn& operator=(const LoadedPlugIn&) = delete;

  FakeWorld fake;
  plugin::PlugIn plugIn;
};

}  // namespace vernoxa::fuzz
