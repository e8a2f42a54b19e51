// The one table of the plug-in's Tcl commands.
#pragma once

#include <cstddef>
#include <span>

#include "dispatch/description.h"
#include "plugin/session.h"
#include "tcl/command.h"

struct Tcl_Interp;
struct Tcl_Obj;

namespace vernoxa::plugin {

using CommandFunction = CommandResult (*)(CommandCall&, Session&);

constexpr std::size_t mostArguments = 7;

// An argument that is missing reads as the empty text.
struct ArgumentList {
  Few<Argument, mostArguments> each;
  const char* without = nullptr;  // what a call without any argument does, if it is allowed
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

// In the order of registration.
std::span<const CommandRow> commandTable();

// Creates every command of the table, in table order, without client data, each behind the one guard.
void registerCommands(Tcl_Interp* interp);

// Calls the row's function with its parts. No exception gets past it: each becomes a line in the crash log and the
// status that the host's scripts know.
int guarded(const CommandRow& row, Tcl_Interp* interp, int count, Tcl_Obj* const* objects) noexcept;

}  // namespace vernoxa::plugin
