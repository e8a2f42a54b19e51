#include "recording_host_tcl.h"

#include <tcl.h>

#include "plugin/command_table.h"
#include "target.h"

namespace vernoxa::fuzz {
namespace {

bool variableRead = false;

char* noteRead(ClientData, Tcl_Interp*, const char*, const char*, int) {
  variableRead = true;
  return nullptr;
}

Evaluation listOf(const Words& words) {
  std::vector<const char*> elements;
  for (std::size_t index = 1; index < words.size(); ++index) {
    elements.push_back(words[index].c_str());
  }
  char* const merged = Tcl_Merge(static_cast<int>(elements.size()), elements.data());
  const std::string text = merged;
  Tcl_Free(merged);
  return {true, text};
}

}  // namespace

RecordingHost::RecordingHost() {
  interp.recordEverything();
  interp.define("unknown", [this](const Words&) { return Evaluation{true, answer_}; });
  interp.define("list", listOf);
  for (const char* const name : {"evil", "a", "x"}) {
    Tcl_SetVar(interp.get(), name, "value", TCL_GLOBAL_ONLY);
    Tcl_TraceVar(interp.get(), name, TCL_GLOBAL_ONLY | TCL_TRACE_READS, noteRead, nullptr);
  }
  plugin::registerCommands(interp.get());
}

// A procedure of the host is not defined here: it arrives at `unknown`, whose first argument is its name.
void RecordingHost::requireOnly(const Procedures& allowed) const {
  require(!variableRead, "a variable was read");
  for (const Words& words : interp.calls) {
    const bool ownList = words.front() == "list";
    require(ownList || (words.size() > 1 && allowed.contains(words[1])),
            "evaluated: " + words.front() + " " + (words.size() > 1 ? words[1] : ""));
  }
}

RecordingHost& recordingHost() {
  static RecordingHost host;
  return host;
}

}  // namespace vernoxa::fuzz
