#include "designs/file_status_commands.h"

#include "designs/open_designs.h"
#include "dispatch/companion_sender.h"
#include "link/companion_link.h"
#include "link/file_status.h"
#include "system/log.h"
#include "tcl/script_host.h"
#include "text/text.h"

namespace vernoxa::designs {
namespace {

CommandResult packetResult(const Json& message, const CompanionSender& sender, const Logs& logs) {
  CommandResult result{sender.packetText(message.printUnformatted())};
  logs.openTraffic().writeLine("Tcl_SetResult");
  return result;
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

CommandResult readOpenPath(CommandCall& call, const link::FileStatus& status, const CompanionSender& sender,
                           const Logs& logs) {
  logs.openTraffic().writeLine("5962");
  const std::string path(call.arguments.text(1));
  if (!status.hasName(path)) {
    return {};
  }
  const Json message = status.opened(path, pinCountFor(call.host, path));
  logs.openTraffic().writeLine("ReadOpenPath1111111111");
  return packetResult(message, sender, logs);
}

CommandResult sendSaveFile(CommandCall& call, const link::FileStatus& status, const CompanionSender& sender,
                           const Logs& logs) {
  const std::string_view path = call.arguments.text(1);
  return status.hasName(path) ? packetResult(status.saved(path), sender, logs) : CommandResult();
}

CommandResult sendCloseFile(CommandCall& call, const link::FileStatus& status, const CompanionSender& sender,
                            const Logs& logs) {
  logs.openTraffic().writeLine("6073 Close");
  const std::string_view path = call.arguments.text(1);
  return status.hasName(path) ? packetResult(status.closed(path), sender, logs) : CommandResult();
}

CommandResult getOpenFileCount(CommandCall&, const OpenDesigns& designs) {
  return {std::to_string(designs.all().size())};
}

CommandResult serverLinkBreak(CommandCall&, link::CompanionLink& link) {
  link.noteBreak();
  return {};
}

}  // namespace vernoxa::designs
