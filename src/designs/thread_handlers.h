// The handlers of the link thread's requests: the connection to the companion, and the open designs.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa::inline dispatch {
class CompanionSender;
}  // namespace vernoxa::inline dispatch
namespace vernoxa::link {
class CompanionLink;
}  // namespace vernoxa::link
namespace vernoxa::inline system {
class Files;
class LogWriter;
class ProjectFolder;
}  // namespace vernoxa::inline system
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class MessagePaths;
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::designs {

class OpenDesigns;

Outcome creatClient(const Request&, ScriptHost& host, const TextConverter& converter, link::CompanionLink& link,
                    OpenDesigns& designs);
Outcome getNewOpenPath(const Request&, ScriptHost& host, OpenDesigns& designs, LogWriter& log);
Outcome getNetsList(const Request& request, ScriptHost& host, const TextConverter& converter, Files& files,
                    const ProjectFolder& project, const MessagePaths& paths);
Outcome getDsnPinCount(const Request& request, ScriptHost& host, const TextConverter& converter, OpenDesigns& designs,
                       LogWriter& log);
Outcome fileStatus(const Request& request, ScriptHost& host, const CompanionSender& sender, OpenDesigns& designs,
                   LogWriter& log);

}  // namespace vernoxa::designs
