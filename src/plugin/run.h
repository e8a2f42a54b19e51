// Adapts a function to its table. The function's parameters say which parts of the call and of the session it works on;
// each is found by its type.
#pragma once

#include <string>
#include <type_traits>

#include "dispatch/handler.h"
#include "plugin/session.h"
#include "tcl/command.h"

namespace vernoxa::plugin {

// Looks among the parts of the call first, then in the session.
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
  } else if constexpr (std::is_same_v<Part, const StoredMembers>) {
    return call.stored;
  } else {
    return session.part<Part>();
  }
}

template <class Result, class... Parts, Result (*function)(Parts&...)>
struct Run<function> {
  template <class Call>
  static Result on(Call& call, Session& session) {
    return function(partOf<Parts>(call, session)...);
  }
  static void onLinkThread(LinkThreadParts& thread) { function(thread.part<Parts>()...); }

  using Call = std::conditional_t<std::is_same_v<Result, CommandResult>, CommandCall, RequestCall>;
};

// The function in the form that a row of the tables holds.
template <auto function>
constexpr auto run = &Run<function>::template on<typename Run<function>::Call>;

template <auto field>
struct Kept;

template <class Part, std::string Part::*field>
struct Kept<field> {
  static void by(Session& session, const std::string& text) { session.part<Part>().*field = text; }
};

// Stores a member's text in that field of a part.
template <auto field>
constexpr auto storeIn = &Kept<field>::by;

// Runs a function on the link thread. It can name only parts that the threads share or that belong to this thread.
template <auto function>
void runOnLinkThread(LinkThreadParts& thread) {
  Run<function>::onLinkThread(thread);
}

}  // namespace vernoxa::plugin
