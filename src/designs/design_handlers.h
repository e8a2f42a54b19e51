// The handlers of the companion's requests about design files and what belongs to a whole design.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa {

class FileStatus;
class LogWriter;
class MessagePaths;
class ScriptHost;
class TextConverter;
class UserMessages;

Outcome autoDealwithDsn(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome clearCurrentDesign(const Request&, ScriptHost& host);
Outcome checkOpenState(const Request& request, ScriptHost& host, const TextConverter& text, MessagePaths& paths,
                       UserMessages& messages, LogWriter& log);
Outcome cancel(const Request& request, const TextConverter& text);
Outcome setNewGuid(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome closeOrcad(const Request&, ScriptHost& host);

// The companion's answers to the plug-in's own messages. The one to a FileStatus names the folder of the project that
// is open.
Outcome applyReply(const Request& reply, const FileStatus& status);

}  // namespace vernoxa
