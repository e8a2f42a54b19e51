#include "designs/file_status.h"
#include "dispatch/script_values.h"
#include "dispatch/services.h"
#include "plugin/companion_handlers.h"
#include "system/user_messages.h"
#include "system/world.h"
#include "tcl/script.h"
#include "tcl/script_host.h"
#include "text/code_page.h"
#include "text/path_text.h"

namespace vernoxa {
namespace {

using Parts = std::vector<std::string>;

// None for an error and for what is no list.
Parts elementsOf(const Evaluation& answer, HandlerContext& context) {
  return answer.ok ? context.host.splitList(answer.text).value_or(Parts()) : Parts();
}

// A project is a list of its path and its page names.
Json openProject(const Parts& parts, HandlerContext& context) {
  Json project = Json::object();
  project.add("ProjectPath", parts.empty() ? std::string() : designName(context.services, parts.front()));
  const JsonView pages = project.add("Pages", Json::array());
  for (std::size_t index = 1; index < parts.size(); ++index) {
    project.appendTo(pages, Json::string(replyValue(context, parts[index])));
  }
  return project;
}

// The host's own answer does not change the result, only the text beside it.
Outcome placeWith(Literal procedure, const Request& request, HandlerContext& context) {
  const Script script = Script(procedure).literal(" ").number(request.number("Type")).literal(" {}");
  const std::string answer = context.host.evaluate(script).text;
  Json data = Json::object();
  data.add("ErrInfo", answer == "1" ? std::string() : replyValue(context, answer));
  return Outcome::success(std::move(data));
}

Outcome exportDrawing(const Request& request, HandlerContext& context) {
  const std::string path = projectPath(request, context);
  const Evaluation answer =
      context.host.evaluateJoined(Script("convertToSVG").joined(path), Script("convertToSVG ").quoted(path));
  if (!answer.ok || answer.text.empty()) {
    return Outcome::failure(replyValue(context, answer.text), repliedItself);
  }
  const std::string folder = pathText(context.services, context.services.state.folder.get() / "Cache" / "Output");
  Json data = Json::object();
  data.add("SVGPath", folder);
  data.add("PreviewPic", folder + "\\Preview.bmp");
  return Outcome::success(std::move(data), "");
}

}  // namespace

Outcome getActiveProPages(const Request&, HandlerContext& context) {
  const Evaluation answer = context.host.evaluate(Script("GetActiveProPages"));
  const auto projects = elementsOf(answer, context);
  Json data = Json::object();
  if (projects.empty()) {
    data.add("ErrInfo", replyValue(context, answer.text));
    return {handled, Reply{std::move(data), "1", std::nullopt}};
  }
  data.add("ErrInfo", "");
  const JsonView open = data.add("Open", Json::array());
  for (const std::string& project : projects) {
    data.appendTo(open, openProject(context.host.splitList(project).value_or(Parts()), context));
  }
  return Outcome::success(std::move(data));
}

Outcome setPlacePortType(const Request& request, HandlerContext& context) {
  return placeWith("KX_PlaceWirePort", request, context);
}

Outcome setPlaceOffpageType(const Request& request, HandlerContext& context) {
  return placeWith("KX_PlaceWireOffPage", request, context);
}

Outcome createSvg(const Request& request, HandlerContext& context) {
  try {
    return exportDrawing(request, context);
  } catch (...) {
    context.services.world.messages.show(u8"处理失败", MessageIcon::none);
    return {stoppedEarly, std::nullopt};
  }
}

}  // namespace vernoxa
