#include "modules/request_commands.h"

#include "dispatch/companion_sender.h"
#include "modules/companion_query.h"
#include "modules/library_files.h"
#include "modules/placement_context.h"
#include "modules/upload_message.h"
#include "system/files.h"
#include "system/log.h"
#include "text/message_paths.h"
#include "text/text_converter.h"

namespace vernoxa::modules {
namespace {

// A path in the form in which the host's scripts put it into other scripts; empty if the file does not exist.
std::string pathAnswer(Files& files, const TextConverter& converter, const std::string& path) {
  return files.exists(converter.path(path)) ? converter.doubledBackslashes(path) : std::string();
}

}  // namespace

CommandResult sendUploadMarket(CommandCall& call, PlacementContext& placement, PreviewPicture& preview,
                               const TextConverter& converter, const CompanionSender& sender) {
  const Arguments& given = call.arguments;
  const UploadedSelection selection{given.text(1), given.text(2), given.text(3),
                                    given.text(4), given.text(5), given.text(6)};
  const std::string message = uploadMessage(selection, preview.path, placement.dsnDatPath, converter).printFormatted();
  preview.path.clear();
  placement.dsnDatPath.clear();
  return {sender.send(call.host, message).text};
}

CommandResult getResPath(CommandCall& call, ResourcePaths& paths, const CompanionQuery& query, Files& files,
                         const TextConverter& converter, const Logs& logs) {
  const std::string id(call.arguments.text(1));
  auto& known = paths.known;
  if (const auto found = known.find(id); found != known.end() && files.exists(converter.path(found->second))) {
    return {pathAnswer(files, converter, found->second)};
  }
  Json request = Json::object();
  request.add("Command", "GetMarketResPath");
  const JsonView data = request.add("Data", Json::object());
  request.addTo(data, "ResId", Json::string(converter.messageText(id)));
  request.add("Result", "0");
  const auto reply = query.ask(request.printUnformatted(), "ResId");
  if (!reply || !reply->errorText.empty()) {
    return {reply ? reply->errorText : std::string()};
  }
  const auto path = reply->data.member("DatPath").text();
  if (!path) {
    logs.openTraffic().writeLine("DatPath");
    return {reply->text};
  }
  known[id] = *path;
  return {pathAnswer(files, converter, std::string(*path))};
}

CommandResult getSelfUserId(CommandCall&, PlacementContext& placement, const CompanionQuery& query) {
  std::string& userId = placement.PartIndex;
  if (!userId.empty()) {
    return {userId};
  }
  const auto reply = query.ask("{\"Command\":\"GetSelfId\",\"Data\":{},\"Result\":\"0\"}", "UserId");
  if (!reply || !reply->errorText.empty()) {
    return {reply ? reply->errorText : std::string()};
  }
  userId = reply->value;
  return {userId};
}

CommandResult removeDatFile(CommandCall&, const PlacementContext& placement, LibraryFiles& libraries,
                            const TextConverter& converter) {
  for (const FilePath& path :
       {libraries.newPath(), libraries.temporaryPath(), libraries.backupPath(), converter.path(placement.dsnDatPath)}) {
    libraries.remove(path);
  }
  return {};
}

}  // namespace vernoxa::modules
