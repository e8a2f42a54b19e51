// The handlers of the companion's requests about design files and what belongs to a whole design.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa::link {
class FileStatus;
}  // namespace vernoxa::link
namespace vernoxa::inline system {
class LogWriter;
class UserMessages;
}  // namespace vernoxa::inline system
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class MessagePaths;
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::designs {

Outcome autoDealwithDsn(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome clearCurrentDesign(const Request&, ScriptHost& host);
Outcome checkOpenState(const Request& request, ScriptHost& host, const TextConverter& converter, MessagePaths& paths,
                       UserMessages& messages, LogWriter& log);
Outcome cancel(const Request& request, const TextConverter& converter);
Outcome setNewGuid(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome closeOrcad(const Request&, ScriptHost& host);

// Takes the companion's answers to the plug-in's own messages. The answer to a FileStatus names the folder of the open
// project.
Outcome applyReply(const Request& reply, const link::FileStatus& status);

}  // namespace vernoxa::designs
