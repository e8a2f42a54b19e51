// The handler of the companion's request for a design's drawings.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa::inline system {
class ProjectFolder;
}  // namespace vernoxa::inline system
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class MessagePaths;
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::drawing {

// Has the host export a design's pages; answers the folder of their files and the path of the preview picture there.
Outcome createSvg(const Request& request, ScriptHost& host, const TextConverter& converter,
                  const ProjectFolder& project, const MessagePaths& paths);

}  // namespace vernoxa::drawing
