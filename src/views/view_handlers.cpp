#include "views/view_handlers.h"

#include "dispatch/script_values.h"
#include "tcl/script_host.h"
#include "text/message_paths.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::views {
namespace {

using Parts = std::vector<std::string>;

// Empty for an error and for text that is not a list.
Parts elementsOf(const Evaluation& answer, ScriptHost& host) {
  return answer.ok ? host.splitList(answer.text).value_or(Parts()) : Parts();
}

// A project is a list of its path and its page names.
Json openProject(const Parts& parts, const TextConverter& converter, MessagePaths& paths) {
  Json project = Json::object();
  project.add("ProjectPath", parts.empty() ? std::string() : paths.ofDesign(parts.front()));
  const JsonView pages = project.add("Pages", Json::array());
  for (std::size_t index = 1; index < parts.size(); ++index) {
    project.appendTo(pages, Json::string(converter.messageText(parts[index])));
  }
  return project;
}

// The request succeeds whatever the host answers; "ErrInfo" tells the answer.
Outcome placeWith(Start procedure, const Request& request, ScriptHost& host, const TextConverter& converter) {
  const Script script = Script(procedure).literal(" ").number(request.number("Type")).literal(" {}");
  const std::string answer = host.evaluate(script).text;
  Json data = Json::object();
  data.add("ErrInfo", answer == "1" ? std::string() : converter.messageText(answer));
  return Outcome::success(std::move(data));
}

}  // namespace

Outcome getActiveProPages(const Request&, ScriptHost& host, const TextConverter& converter, MessagePaths& paths) {
  const Evaluation answer = host.evaluate(Script("GetActiveProPages"));
  const auto projects = elementsOf(answer, host);
  Json data = Json::object();
  if (projects.empty()) {
    data.add("ErrInfo", converter.messageText(answer.text));
    return {Reply{std::move(data), "1", std::nullopt}, std::nullopt};
  }
  data.add("ErrInfo", "");
  const JsonView open = data.add("Open", Json::array());
  for (const std::string& project : projects) {
    data.appendTo(open, openProject(host.splitList(project).value_or(Parts()), converter, paths));
  }
  return Outcome::success(std::move(data));
}

Outcome getPartPropertyList(const Request& request, ScriptHost& host, const TextConverter& converter) {
  const Evaluation answer = host.evaluate(Script("getAllPropertyName ").quoted(projectPath(request, converter)));
  if (!answer.ok || answer.text.empty()) {
    return Outcome::failed(converter.messageText(answer.text));
  }
  Json data = Json::object();
  data.add("PartNameProperty", "Part Name");
  data.add("PartNumberProperty", "Part Number");
  const JsonView names = data.add("PropertyList", Json::array());
  for (const std::string& name : elementsOf(answer, host)) {
    data.appendTo(names, Json::string(converter.messageText(name)));
  }
  return Outcome::success(std::move(data), "");
}

Outcome setPlacePortType(const Request& request, ScriptHost& host, const TextConverter& converter) {
  return placeWith("KX_PlaceWirePort", request, host, converter);
}

Outcome setPlaceOffpageType(const Request& request, ScriptHost& host, const TextConverter& converter) {
  return placeWith("KX_PlaceWireOffPage", request, host, converter);
}

Outcome adjustRefAndValue(const Request&, ScriptHost& host, const TextConverter& converter) {
  return doneOrFailure(host, converter, Script("ReplaceRefAndValue"));
}

Outcome renameRef(const Request& request, ScriptHost& host, const TextConverter& converter) {
  return doneOrFailure(host, converter, Script("RenameRef ").number(request.number("Type")));
}

Outcome jumpToDsn(const Request& request, ScriptHost& host, const TextConverter& converter) {
  // Messages and page files write a backslash in a page's name as this marker.
  const std::string page = replaceAll(scriptValue(request, converter, "PageName"), "[;fanxiegan;]", "\\\\");
  Script script("JumpToDsn ");
  script.quoted(doubleBackslashes(projectPath(request, converter))).literal(" ");
  script.quoted(scriptValue(request, converter, "Sch")).literal(" ").quoted(page);
  script.literal(" [list ").bare(scriptValue(request, converter, "PagePos")).literal("]");
  host.evaluate(script);
  return Outcome::success();
}

Outcome jumpToPartRef(const Request& request, ScriptHost& host, const TextConverter& converter) {
  if (!request.data.member("PartRef").text()) {
    return Outcome::failed("No PartRef");
  }
  if (!request.data.member("ProjectPath").text()) {
    return Outcome::refused();
  }
  Script script("gotoLocation ");
  script.quoted(projectPath(request, converter)).literal(" ").bare(scriptValue(request, converter, "PartRef"));
  return host.evaluate(script).ok ? Outcome::success() : Outcome::failed("exec error");
}

}  // namespace vernoxa::views
