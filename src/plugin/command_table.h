// The one table of the plug-in's Tcl commands.
#pragma once

#include <array>
#include <cstddef>

#include "plugin/session.h"
#include "tcl/command.h"

namespace vernoxa {

using CommandFunction = CommandResult (*)(CommandCall&, Session&);

struct CommandRow {
  const char* name;
  CommandFunction run;      // none: the capability is not there yet, and the command says so by failing
  const char* usage;        // arguments after the name
  const char* role;         // what it is for, one sentence
  const char* file;         // where it is carried out, below src/
  const char* beforeState;  // answer while no session exists
  const char* crashName;    // in the crash log; the command's own name when none is given
};

constexpr std::size_t commandCount = 48;

// In the order of registration.
const std::array<CommandRow, commandCount>& commandTable();

}  // namespace vernoxa
