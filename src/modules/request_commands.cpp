#include "modules/request_commands.h"

#include "dispatch/companion_sender.h"
#include "dispatch/services.h"
#include "dispatch/state.h"
#include "modules/companion_query.h"
#include "modules/library_files.h"
#include "modules/upload_message.h"
#include "system/files.h"
#include "system/log.h"
#include "system/world.h"
#include "text/code_page.h"

namespace vernoxa {
namespace {

bool isThere(const Services& services, std::string_view path) {
  return services.world.files.exists(services.text.path(path));
}

// A path as the host's scripts write one into further scripts; empty for a file that is not there.
std::string pathAnswer(const Services& services, const std::string& path) {
  return isThere(services, path) ? services.text.doubledBackslashes(path) : std::string();
}

}  // namespace

CommandResult sendUploadMarket(CommandCall& call, Services& services) {
  const Arguments& given = call.arguments;
  PlacementContext& placement = services.state.placement;
  const UploadedSelection selection{given.text(1), given.text(2), given.text(3),
                                    given.text(4), given.text(5), given.text(6)};
  const std::string message = uploadMessage(selection, placement, services.text).printFormatted();
  placement.dsnBmpPath.clear();
  placement.dsnDatPath.clear();
  return {sendToCompanion(call.host, services, message).text};
}

CommandResult getResPath(CommandCall& call, Services& services) {
  const std::string id(call.arguments.text(1));
  auto& known = services.state.resourcePaths;
  if (const auto found = known.find(id); found != known.end() && isThere(services, found->second)) {
    return {pathAnswer(services, found->second)};
  }
  const std::string request = "{\"Command\":\"GetMarketResPath\",\"Data\":{\"ResId\":\"" +
                              services.text.messageText(id) + "\"},\"Result\":\"0\"}";
  const auto reply = askCompanion(services, request, "ResId");
  if (!reply || !reply->errorText.empty()) {
    return {reply ? reply->errorText : std::string()};
  }
  const auto path = reply->data.member("DatPath").text();
  if (!path) {
    services.logs.openTraffic().writeLine("DatPath");
    return {reply->text};
  }
  known[id] = *path;
  return {pathAnswer(services, std::string(*path))};
}

CommandResult getSelfUserId(CommandCall&, Services& services) {
  std::string& userId = services.state.placement.PartIndex;
  if (!userId.empty()) {
    return {userId};
  }
  const auto reply = askCompanion(services, "{\"Command\":\"GetSelfId\",\"Data\":{},\"Result\":\"0\"}", "UserId");
  if (!reply || !reply->errorText.empty()) {
    return {reply ? reply->errorText : std::string()};
  }
  userId = reply->value;
  return {userId};
}

CommandResult removeDatFile(CommandCall&, Services& services) {
  for (const FilePath& path : {newLibraryPath(services), temporaryLibraryPath(services), libraryBackupPath(services),
                               services.text.path(services.state.placement.dsnDatPath)}) {
    removePlacementFile(services, path);
  }
  return {};
}

}  // namespace vernoxa
