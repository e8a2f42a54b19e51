// The two endpoints at which packets reach the plug-in on the host's thread.
#pragma once

#include "tcl/command.h"

namespace vernoxa::inline dispatch {
class Dispatcher;
}  // namespace vernoxa::inline dispatch

namespace vernoxa::plugin {

// Each takes a packet text and answers that of the reply; nothing without an argument.
CommandResult packetParser(CommandCall& call, Dispatcher& dispatcher);
CommandResult packetParserForPthread(CommandCall& call, Dispatcher& dispatcher);

}  // namespace vernoxa::plugin
