#include "designs/thread_handlers.h"

#include "designs/open_designs.h"
#include "dispatch/companion_sender.h"
#include "dispatch/script_values.h"
#include "link/companion_link.h"
#include "system/files.h"
#include "system/log.h"
#include "system/shared_path.h"
#include "tcl/script_host.h"
#include "text/message_paths.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::designs {
namespace {

// Makes only the last folder: if the project's own folder does not exist, nothing can be written there.
FilePath netsFile(const ProjectFolder& project, Files& files) {
  const FilePath folder = project.get() / "Cache";
  files.createFolder(folder);
  return folder / "Nets.txt";
}

// Passes the status on to the companion unchanged, and notes what the companion knows once it was sent.
void passOn(const Request& request, ScriptHost& host, const CompanionSender& sender, OpenDesigns& designs) {
  const auto status = request.data.member("Status").text();
  const auto fileName = request.data.member("FileName").text();
  if (!status || !fileName) {
    return;
  }
  Json message = Json::object();
  message.add("Command", "FileStatus");
  message.add("Result", "0");
  message.add("Data", Json::copyOf(request.data));
  if (!sender.send(host, message.printUnformatted()).ok) {
    return;
  }
  if (*status == "Open") {
    designs.noteReported(*fileName);
  } else if (*status == "Close") {
    designs.noteClosed(*fileName);
  }
}

}  // namespace

Outcome creatClient(const Request&, ScriptHost& host, const TextConverter& converter, link::CompanionLink& link,
                    OpenDesigns& designs) {
  const bool connected = link.clientCreated();
  const unsigned breaks = link.breaks();
  const Evaluation answer = host.evaluate(Script("creatClient ").number(connected ? 0 : 1));
  if (converter.messageText(answer.text) != "0") {
    return Outcome::failed("creat client failed!");
  }
  if (!connected) {
    designs.forgetReported();
  }
  if (link.breaks() == breaks) {  // it may have broken again meanwhile, and that is reported only once
    link.setClientCreated(true);
  }
  return Outcome::success();
}

Outcome getNewOpenPath(const Request&, ScriptHost& host, OpenDesigns& designs, LogWriter& log) {
  designs.scan(host, log);
  if (designs.all().empty()) {
    return Outcome::failed("No file!");
  }
  Json data = Json::object();
  if (const auto path = designs.firstUnreported()) {
    data.add("ProjectPath", *path);
  }
  data.add("CloseFile", designs.closed());
  return Outcome::success(std::move(data));
}

Outcome getNetsList(const Request& request, ScriptHost& host, const TextConverter& converter, Files& files,
                    const ProjectFolder& project, const MessagePaths& paths) {
  const FilePath file = netsFile(project, files);
  Script script("GetNetsList ");
  script.quoted(doubleBackslashes(converter.hostPath(request.text("ProjectPath")))).literal(" ");
  script.quoted(doubleBackslashes(file.utf8()));
  const Evaluation answer = host.evaluate(script);
  if (!answer.ok || answer.text.starts_with("Error")) {
    return Outcome::failed(converter.messageText(answer.text));
  }
  if (!files.exists(file)) {
    return Outcome::failed("File not exist");
  }
  Json data = Json::object();
  data.add("netlistsFile", paths.of(file));
  data.add("datFile", converter.messageText(answer.text));
  return Outcome::success(std::move(data));
}

Outcome getDsnPinCount(const Request& request, ScriptHost& host, const TextConverter& converter, OpenDesigns& designs,
                       LogWriter& log) {
  const auto nested = request.data.member("ProjectPath").text();
  const auto path = nested ? nested : request.message.member("ProjectPath").text();
  if (!path) {
    return Outcome::refused();
  }
  const std::string argument = doubledOnce(converter.hostPath(*path));
  const Evaluation answer = host.evaluate(Script("getDsnPinCount ").quoted(argument));
  const std::string count = converter.messageText(answer.text);
  log.writeLine("return:" + count);
  if (count.find("//") != std::string::npos) {
    log.writeLine(count);
  }
  log.writeLine("Over");
  if (answer.text == "-1") {
    designs.noteWithoutPins(*path);
  }
  Json data = Json::object();
  data.add("PinCount", count);
  return Outcome::success(std::move(data));
}

Outcome fileStatus(const Request& request, ScriptHost& host, const CompanionSender& sender, OpenDesigns& designs,
                   LogWriter& log) {
  passOn(request, host, sender, designs);
  designs.scan(host, log);
  if (designs.all().empty()) {
    return Outcome::failed("No file!");
  }
  Json data = Json::object();
  data.add("ProjectPath", designs.all().front().hostPath);
  return Outcome::success(std::move(data));
}

}  // namespace vernoxa::designs
