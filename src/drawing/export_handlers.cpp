#include "drawing/export_handlers.h"

#include "dispatch/script_values.h"
#include "system/shared_path.h"
#include "tcl/script_host.h"
#include "text/message_paths.h"
#include "text/text_converter.h"

namespace vernoxa::drawing {
namespace {

Outcome exportDrawing(const Request& request, ScriptHost& host, const TextConverter& converter,
                      const ProjectFolder& project, const MessagePaths& paths) {
  const Evaluation answer = host.evaluateJoined("convertToSVG", projectPath(request, converter));
  if (!answer.ok || answer.text.empty()) {
    return Outcome::failed(converter.messageText(answer.text));
  }
  const std::string folder = paths.of(project.get() / "Cache" / "Output");
  Json data = Json::object();
  data.add("SVGPath", folder);
  data.add("PreviewPic", folder + "\\Preview.bmp");
  return Outcome::success(std::move(data), "");
}

}  // namespace

Outcome createSvg(const Request& request, ScriptHost& host, const TextConverter& converter,
                  const ProjectFolder& project, const MessagePaths& paths) {
  try {
    return exportDrawing(request, host, converter, project, paths);
  } catch (...) {
    return Outcome::refused(Failure::inBox(u8"处理失败"));
  }
}

}  // namespace vernoxa::drawing
