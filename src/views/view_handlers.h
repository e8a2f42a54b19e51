// The handlers of the companion's requests about pages, properties, ports, reference designators, values and jumps.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class MessagePaths;
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::views {

Outcome getActiveProPages(const Request&, ScriptHost& host, const TextConverter& converter, MessagePaths& paths);
Outcome getPartPropertyList(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome setPlacePortType(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome setPlaceOffpageType(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome adjustRefAndValue(const Request&, ScriptHost& host, const TextConverter& converter);
Outcome renameRef(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome jumpToDsn(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome jumpToPartRef(const Request& request, ScriptHost& host, const TextConverter& converter);

}  // namespace vernoxa::views
