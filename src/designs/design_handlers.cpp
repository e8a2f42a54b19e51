#include <algorithm>
#include <cctype>

#include "designs/file_status.h"
#include "dispatch/script_values.h"
#include "dispatch/services.h"
#include "plugin/companion_handlers.h"
#include "system/log.h"
#include "system/user_messages.h"
#include "system/world.h"
#include "tcl/script.h"
#include "tcl/script_host.h"
#include "text/code_page.h"
#include "text/text.h"

namespace vernoxa {
namespace {

// Paths of one file, in UTF-8, compare equal whatever their separators and case.
std::string comparablePath(std::string_view path) {
  std::string comparable = replaceAll(path, "\\", "/");
  std::transform(comparable.begin(), comparable.end(), comparable.begin(),
                 [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
  return comparable;
}

// Whether the path is among the host's open ones, which are joined by ";".
bool isOpenInHost(HandlerContext& context, const std::string& path, const std::string& openPaths) {
  const TextConverter& text = context.services.text;
  const std::string wanted = comparablePath(text.scriptValue(path));
  bool open = false;
  for (const std::string& entry : splitItems(openPaths, ';')) {
    const std::string candidate = comparablePath(text.hostPath(entry));
    const std::string told = comparablePath(text.scriptValue(designName(context.services, entry)));
    const bool same = candidate == wanted || (!told.empty() && told == wanted);
    context.log.writeLine("open file:" + replyValue(context, entry));
    if (candidate.find('/') == std::string::npos) {
      context.services.world.messages.show(u8"文件一打开路径异常", MessageIcon::none);
    } else if (same) {
      open = true;
    }
  }
  return open;
}

Outcome withEmptyError(Json data) {
  return Outcome::success(std::move(data), "");
}

}  // namespace

Outcome autoDealwithDsn(const Request& request, HandlerContext& context) {
  Script script("AutoDeal ");
  script.quoted(projectPath(request, context)).literal(" [list");
  for (const JsonView member : request.data) {
    const auto value = member.text();
    if (value && member.name() != "ProjectPath") {
      script.literal(" ").bare(context.services.text.scriptValue(*value));
    }
  }
  context.host.evaluate(script.literal("]"));
  Json data = Json::object();
  data.add("id", request.data.member("id").text().value_or(std::string_view()));
  return Outcome::success(std::move(data));
}

Outcome selectModule(const Request& request, HandlerContext& context) {
  context.host.evaluate(Script("getSelectPart ").quoted(scriptValue(request, context, "Page")));
  return Outcome::success();
}

Outcome clearCurrentDesign(const Request&, HandlerContext& context) {
  context.host.evaluate(Script("ClearCurrentDesign"));
  return Outcome::success();
}

Outcome checkOpenState(const Request& request, HandlerContext& context) {
  const std::string openPaths = context.host.evaluate(Script("InitPath")).text;
  const std::string path = request.text("ProjectPath");
  context.log.writeLine("Get file:" + path);
  const bool open = isOpenInHost(context, path, openPaths);
  context.log.writeLine(open ? "file state:1011 Open" : "file state:1011 Close");
  Json data = Json::object();
  data.add("State", open ? "Open" : "Close");
  return Outcome::success(std::move(data));
}

Outcome cancel(const Request& request, HandlerContext& context) {
  Json data = Json::object();
  data.add("ExitCommand", "\"" + projectPath(request, context) + "\"");
  return Outcome::success(std::move(data));
}

Outcome getPartPropertyList(const Request& request, HandlerContext& context) {
  const Evaluation answer = context.host.evaluate(Script("getAllPropertyName ").quoted(projectPath(request, context)));
  if (!answer.ok || answer.text.empty()) {
    return Outcome::failure(replyValue(context, answer.text), repliedItself);
  }
  Json data = Json::object();
  data.add("PartNameProperty", "Part Name");
  data.add("PartNumberProperty", "Part Number");
  const JsonView names = data.add("PropertyList", Json::array());
  for (const std::string& name : context.host.splitList(answer.text).value_or(std::vector<std::string>())) {
    data.appendTo(names, Json::string(replyValue(context, name)));
  }
  return withEmptyError(std::move(data));
}

Outcome setNewGuid(const Request& request, HandlerContext& context) {
  const std::string path = projectPath(request, context);
  const Evaluation answer = context.host.evaluateJoined(Script("getGuid").joined(path).literal(" 1"),
                                                        Script("getGuid ").quoted(path).literal(" 1"));
  if (!answer.ok || answer.text.starts_with("Invalid")) {
    return Outcome::failure(replyValue(context, answer.text), repliedItself);
  }
  Json data = Json::object();
  data.add("Guid", replyValue(context, answer.text));
  return withEmptyError(std::move(data));
}

Outcome closeOrcad(const Request&, HandlerContext& context) {
  context.host.evaluate(Script("Exit"));
  return {handled, std::nullopt};
}

}  // namespace vernoxa
