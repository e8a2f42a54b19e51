// What the plug-in calls in the host's interpreter: procedures of the host's scripts and of the editor itself.
#pragma once

#include <span>

#include "dispatch/description.h"

namespace vernoxa::plugin {

// An error in a procedure never ends what the plug-in is doing; its text counts as the answer unless the row says
// otherwise.
struct HostProcedure {
  const char* name;
  Few<Argument, 9> arguments;
  const char* answer;   // what it has to answer, and what becomes of it
  const char* purpose;  // one sentence
  bool atLoad = false;  // called when the plug-in is loaded, whatever else calls it
};

std::span<const HostProcedure> hostProcedures();

}  // namespace vernoxa::plugin
