// The one table of the plug-in's Tcl commands.
#pragma once

#include <array>
#include <cstddef>

#include "dispatch/description.h"
#include "plugin/session.h"
#include "tcl/command.h"

struct Tcl_Interp;

namespace vernoxa {

using CommandFunction = CommandResult (*)(CommandCall&, Session&);

constexpr std::size_t mostArguments = 7;

// An argument that is missing reads as the empty text.
struct ArgumentList {
  Few<Argument, mostArguments> each;
  const char* without = nullptr;  // what a call without any does; else all that are not optional are given
};

enum class ResultKind { nothing, plain, packetText };

// What a call answers in Tcl's result.
struct CommandAnswer {
  ResultKind kind = ResultKind::nothing;
  const char* meaning = "";
};

struct CommandRow {
  const char* name;
  CommandFunction run;
  ArgumentList arguments;
  Calls calls;
  CommandAnswer answer;
  const char* purpose;              // one sentence
  const char* beforeState = "";     // answer while no session exists
  const char* crashName = nullptr;  // in the crash log; the command's own name when none is given
};

constexpr std::size_t commandCount = 48;

// In the order of registration.
const std::array<CommandRow, commandCount>& commandTable();

// Creates every command of the table, in table order, without client data, each behind the one guard.
void registerCommands(Tcl_Interp* interp);

}  // namespace vernoxa
