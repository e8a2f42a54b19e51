#include "plugin/endpoints.h"

#include "plugin/request_table.h"

namespace vernoxa::plugin {

CommandResult packetParser(CommandCall& call, Dispatcher& dispatcher) {
  if (call.arguments.count() < 2) {
    return {};
  }
  return {dispatcher.run(companionEndpoint(), call.arguments.text(1), call.host)};
}

CommandResult packetParserForPthread(CommandCall& call, Dispatcher& dispatcher) {
  if (call.arguments.count() < 2) {
    return {};
  }
  return {dispatcher.run(linkEndpoint(), call.arguments.text(1), call.host)};
}

}  // namespace vernoxa::plugin
