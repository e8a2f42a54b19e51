// The handlers of what the link thread asks of the host.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa {

class CompanionLink;
class CompanionSender;
class Files;
class LogWriter;
class MessagePaths;
class OpenDesigns;
class ProjectFolder;
class ScriptHost;
class TextConverter;

Outcome creatClient(const Request&, ScriptHost& host, const TextConverter& text, CompanionLink& link,
                    OpenDesigns& designs);
Outcome getNewOpenPath(const Request&, ScriptHost& host, OpenDesigns& designs, LogWriter& log);
Outcome getNetsList(const Request& request, ScriptHost& host, const TextConverter& text, Files& files,
                    const ProjectFolder& project, const MessagePaths& paths);
Outcome getDsnPinCount(const Request& request, ScriptHost& host, const TextConverter& text, OpenDesigns& designs,
                       LogWriter& log);
Outcome fileStatus(const Request& request, ScriptHost& host, const CompanionSender& sender, OpenDesigns& designs,
                   LogWriter& log);

}  // namespace vernoxa
