#include "designs/design_handlers.h"

#include <algorithm>
#include <cctype>

#include "dispatch/script_values.h"
#include "link/file_status.h"
#include "system/log.h"
#include "system/user_messages.h"
#include "tcl/script_host.h"
#include "text/message_paths.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::designs {
namespace {

// A path (UTF-8) in a form in which separators and upper or lower case make no difference.
std::string comparablePath(std::string_view path) {
  std::string comparable = replaceAll(path, "\\", "/");
  std::transform(comparable.begin(), comparable.end(), comparable.begin(),
                 [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
  return comparable;
}

// Whether the path is among the host's open ones, which are joined by ";".
bool isOpenInHost(const std::string& path, const std::string& openPaths, const TextConverter& converter,
                  MessagePaths& paths, UserMessages& messages, LogWriter& log) {
  const std::string wanted = comparablePath(converter.scriptValue(path));
  bool open = false;
  for (const std::string& entry : splitItems(openPaths, ';')) {
    const std::string candidate = comparablePath(converter.hostPath(entry));
    const std::string reported = comparablePath(converter.scriptValue(paths.ofDesign(entry)));
    const bool same = candidate == wanted || (!reported.empty() && reported == wanted);
    log.writeLine("open file:" + converter.messageText(entry));
    if (candidate.find('/') == std::string::npos) {
      messages.show(u8"文件一打开路径异常", MessageIcon::none);
    } else if (same) {
      open = true;
    }
  }
  return open;
}

}  // namespace

Outcome autoDealwithDsn(const Request& request, ScriptHost& host, const TextConverter& converter) {
  Script script("AutoDeal ");
  script.quoted(projectPath(request, converter)).literal(" [list");
  for (const JsonView member : request.data) {
    const auto value = member.text();
    if (value && member.name() != "ProjectPath") {
      script.literal(" ").bare(converter.scriptValue(*value));
    }
  }
  host.evaluate(script.literal("]"));
  Json data = Json::object();
  data.add("id", request.data.member("id").text().value_or(std::string_view()));
  return Outcome::success(std::move(data));
}

Outcome clearCurrentDesign(const Request&, ScriptHost& host) {
  host.evaluate(Script("ClearCurrentDesign"));
  return Outcome::success();
}

Outcome checkOpenState(const Request& request, ScriptHost& host, const TextConverter& converter, MessagePaths& paths,
                       UserMessages& messages, LogWriter& log) {
  const std::string openPaths = host.evaluate(Script("InitPath")).text;
  const std::string path = request.text("ProjectPath");
  log.writeLine("Get file:" + path);
  const bool open = isOpenInHost(path, openPaths, converter, paths, messages, log);
  log.writeLine(open ? "file state:1011 Open" : "file state:1011 Close");
  Json data = Json::object();
  data.add("State", open ? "Open" : "Close");
  return Outcome::success(std::move(data));
}

Outcome cancel(const Request& request, const TextConverter& converter) {
  Json data = Json::object();
  data.add("ExitCommand", "\"" + projectPath(request, converter) + "\"");
  return Outcome::success(std::move(data));
}

Outcome setNewGuid(const Request& request, ScriptHost& host, const TextConverter& converter) {
  const Evaluation answer = host.evaluateJoined("getGuid", projectPath(request, converter), " 1");
  if (!answer.ok || answer.text.starts_with("Invalid")) {
    return Outcome::failed(converter.messageText(answer.text));
  }
  Json data = Json::object();
  data.add("Guid", converter.messageText(answer.text));
  return Outcome::success(std::move(data), "");
}

Outcome closeOrcad(const Request&, ScriptHost& host) {
  host.evaluate(Script("Exit"));
  return Outcome::silent();
}

Outcome applyReply(const Request& reply, const link::FileStatus& status) {
  const auto path = reply.data.member("Path").text();
  if (reply.command == "FileStatus_EndResult" && path && !path->empty()) {
    status.followProject(*path);
  }
  return Outcome::silent();
}

}  // namespace vernoxa::designs
