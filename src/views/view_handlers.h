// The handlers of the companion's requests about pages, properties, drawings and ports, and about reference
// designators, values and jumps.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa {

class MessagePaths;
class ProjectFolder;
class ScriptHost;
class TextConverter;

Outcome getActiveProPages(const Request&, ScriptHost& host, const TextConverter& text, MessagePaths& paths);
Outcome getPartPropertyList(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome setPlacePortType(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome setPlaceOffpageType(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome createSvg(const Request& request, ScriptHost& host, const TextConverter& text, const ProjectFolder& project,
                  const MessagePaths& paths);

// in reference_handlers.cpp
Outcome adjustRefAndValue(const Request&, ScriptHost& host, const TextConverter& text);
Outcome renameRef(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome jumpToDsn(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome jumpToPartRef(const Request& request, ScriptHost& host, const TextConverter& text);

}  // namespace vernoxa
