// Commands of the plug-in as functions: called with Tcl words, on a fake host and a fake world.
#pragma once

#include "support/session_test.h"
#include "support/tcl_interp_tcl.h"

namespace vernoxa {

class CommandTest : public SessionTest {
 protected:
  using Command = CommandResult (*)(CommandCall&, plugin::Session&);

  // Without the command's own name.
  CommandResult call(Command command, Words words = {}) {
    words.insert(words.begin(), "command");
    const TclWords held(words);
    const Arguments arguments = held.arguments();
    CommandCall each{arguments, host_};
    return command(each, session);
  }
  std::string message(Command command, Words words) { return messageOf(call(command, std::move(words)).text).message; }

  TclInterp interp_;  // Tcl's objects need its library started
};

}  // namespace vernoxa
