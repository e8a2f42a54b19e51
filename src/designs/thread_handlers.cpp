// What the link thread asks of the host: the link itself and the open designs.
#include "designs/thread_handlers.h"

#include "designs/open_designs.h"
#include "dispatch/companion_sender.h"
#include "dispatch/script_values.h"
#include "dispatch/services.h"
#include "system/files.h"
#include "system/log.h"
#include "system/world.h"
#include "tcl/script.h"
#include "tcl/script_host.h"
#include "text/code_page.h"
#include "text/path_text.h"
#include "text/text.h"

namespace vernoxa {
namespace {

// The folder is made one level deep: the project's own folder is there, or nothing can be written.
FilePath netsFile(Services& services) {
  const FilePath folder = services.state.folder.get() / "Cache";
  services.world.files.createFolder(folder);
  return folder / "Nets.txt";
}

// Hands the status on to the companion as it is, and keeps in mind what the companion knows when it was sent.
void passOn(const Request& request, HandlerContext& context) {
  const auto status = request.data.member("Status").text();
  const auto fileName = request.data.member("FileName").text();
  if (!status || !fileName) {
    return;
  }
  Json message = Json::object();
  message.add("Command", "FileStatus");
  message.add("Result", "0");
  message.add("Data", Json::copyOf(request.data));
  if (!sendToCompanion(context.host, context.services, message.printUnformatted()).ok) {
    return;
  }
  if (*status == "Open") {
    noteReported(context.services, *fileName);
  } else if (*status == "Close") {
    noteClosed(context.services.state, *fileName);
  }
}

}  // namespace

Outcome creatClient(const Request&, HandlerContext& context) {
  LinkState& link = context.services.state.link;
  const bool connected = link.clientCreated();
  const unsigned breaks = link.breaks();
  const Evaluation answer = context.host.evaluate(Script("creatClient ").number(connected ? 0 : 1));
  if (context.services.text.messageText(answer.text) != "0") {
    return Outcome::failure("creat client failed!");
  }
  if (!connected) {
    // The companion may be another one by now, which knows nothing yet.
    context.services.state.reportedDesigns.clear();
  }
  if (link.breaks() == breaks) {  // the new one may be gone already, which nobody would tell again
    link.setClientCreated(true);
  }
  return Outcome::success();
}

Outcome getNewOpenPath(const Request&, HandlerContext& context) {
  if (scanOpenDesigns(context).empty()) {
    return Outcome::failure("No file!");
  }
  Json data = Json::object();
  const GlobalState& state = context.services.state;
  if (const auto path = firstUnreported(state)) {
    data.add("ProjectPath", *path);
  }
  data.add("CloseFile", closedDesigns(state));
  return Outcome::success(std::move(data));
}

Outcome getNetsList(const Request& request, HandlerContext& context) {
  const TextConverter& convert = context.services.text;
  const FilePath file = netsFile(context.services);
  Script script("GetNetsList ");
  script.quoted(doubleBackslashes(convert.hostPath(request.text("ProjectPath")))).literal(" ");
  script.quoted(doubleBackslashes(file.utf8()));
  const Evaluation answer = context.host.evaluate(script);
  if (!answer.ok || answer.text.starts_with("Error")) {
    return Outcome::failure(convert.messageText(answer.text));
  }
  if (!context.services.world.files.exists(file)) {
    return Outcome::failure("File not exist");
  }
  Json data = Json::object();
  data.add("netlistsFile", pathText(context.services, file));
  data.add("datFile", convert.messageText(answer.text));
  return Outcome::success(std::move(data));
}

Outcome getDsnPinCount(const Request& request, HandlerContext& context) {
  const auto nested = request.data.member("ProjectPath").text();
  const auto path = nested ? nested : request.message.member("ProjectPath").text();
  if (!path) {
    return {stoppedEarly, std::nullopt};
  }
  const std::string argument = doubledOnce(context.services.text.hostPath(*path));
  const Evaluation answer = context.host.evaluate(Script("getDsnPinCount ").quoted(argument));
  const std::string count = context.services.text.messageText(answer.text);
  context.log.writeLine("return:" + count);
  if (count.find("//") != std::string::npos) {
    context.log.writeLine(count);
  }
  context.log.writeLine("Over");
  if (answer.text == "-1") {
    noteWithoutPins(context.services, *path);
  }
  Json data = Json::object();
  data.add("PinCount", count);
  return Outcome::success(std::move(data));
}

Outcome fileStatus(const Request& request, HandlerContext& context) {
  passOn(request, context);
  const std::vector<KnownDesign>& designs = scanOpenDesigns(context);
  if (designs.empty()) {
    return Outcome::failure("No file!");
  }
  Json data = Json::object();
  data.add("ProjectPath", designs.front().hostPath);
  return Outcome::success(std::move(data));
}

}  // namespace vernoxa
