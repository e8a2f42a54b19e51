// Adapts a function to its table: its parameters say which parts of the call and of the session it works on, and each
// is found there by its type.
#pragma once

#include <type_traits>

#include "dispatch/handler.h"
#include "plugin/session.h"
#include "tcl/command.h"

namespace vernoxa {

// What one call brings along comes before what lives between calls.
template <class Part>
Part& partOf(CommandCall& call, Session& session) {
  if constexpr (std::is_same_v<Part, CommandCall>) {
    return call;
  } else {
    return session.part<Part>();
  }
}

template <class Part>
Part& partOf(RequestCall& call, Session& session) {
  if constexpr (std::is_same_v<Part, const Request>) {
    return call.request;
  } else if constexpr (std::is_same_v<Part, ScriptHost>) {
    return call.host;
  } else if constexpr (std::is_same_v<Part, LogWriter>) {
    return call.log;
  } else {
    return session.part<Part>();
  }
}

template <auto function>
struct Run;

template <class Result, class... Parts, Result (*function)(Parts&...)>
struct Run<function> {
  template <class Call>
  static Result on(Call& call, Session& session) {
    return function(partOf<Parts>(call, session)...);
  }
  static void onShared(SharedParts& shared) { function(shared.part<Parts>()...); }

  using Call = std::conditional_t<std::is_same_v<Result, CommandResult>, CommandCall, RequestCall>;
};

// The function as a row of the tables holds it.
template <auto function>
constexpr auto run = &Run<function>::template on<typename Run<function>::Call>;

// Runs a function of the link thread, which finds only what the threads share.
template <auto function>
void runOnLinkThread(SharedParts& shared) {
  Run<function>::onShared(shared);
}

}  // namespace vernoxa
