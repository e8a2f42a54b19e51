#include "designs/file_status_commands.h"

#include "designs/file_status.h"
#include "dispatch/services.h"
#include "dispatch/state.h"
#include "system/log.h"
#include "tcl/script.h"
#include "tcl/script_host.h"
#include "text/text.h"
#include "wire/packet_text.h"

namespace vernoxa {
namespace {

CommandResult packetResult(const Services& services, const Json& message) {
  std::string packetText;
  encodePacket(services, message.printUnformatted(), packetText);
  services.logs.openTraffic().writeLine("Tcl_SetResult");
  return {packetText};
}

std::string pinCountFor(ScriptHost& host, std::string_view path) {
  const auto extension = extensionOf(path);
  const std::string start = extension ? extension->substr(0, 3) : std::string();
  if (start != "dsn" && start != "DSN") {
    return {};
  }
  return host.evaluate(Script("getDsnPinCount ").quoted(path)).text;
}

}  // namespace

CommandResult readOpenPath(CommandCall& call, Services& services) {
  services.logs.openTraffic().writeLine("5962");
  const std::string path(call.arguments.text(1));
  if (designName(services, path).empty()) {
    return {};
  }
  const Json message = openedMessage(services, path, pinCountFor(call.host, path));
  services.logs.openTraffic().writeLine("ReadOpenPath1111111111");
  return packetResult(services, message);
}

CommandResult sendSaveFile(CommandCall& call, Services& services) {
  const std::string_view path = call.arguments.text(1);
  return designName(services, path).empty() ? CommandResult() : packetResult(services, savedMessage(services, path));
}

CommandResult sendCloseFile(CommandCall& call, Services& services) {
  services.logs.openTraffic().writeLine("6073 Close");
  const std::string_view path = call.arguments.text(1);
  return designName(services, path).empty() ? CommandResult() : packetResult(services, closedMessage(services, path));
}

CommandResult getOpenFileCount(CommandCall&, Services& services) {
  return {std::to_string(services.state.openDesigns.size())};
}

CommandResult serverLinkBreak(CommandCall&, Services& services) {
  services.state.link.noteBreak();
  return {};
}

}  // namespace vernoxa
