// The handlers of the companion's requests for reports. The host's scripts send the results as messages of their own,
// so there is no reply here.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa {

class LogWriter;
class ScriptHost;
class TextConverter;

Outcome getOlbObjectPackageInfo(const Request& request, ScriptHost& host, const TextConverter& text, LogWriter& log);
Outcome getDsnAllPackageInfo(const Request& request, ScriptHost& host, const TextConverter& text, LogWriter& log);
Outcome getOlbAllPackageInfo(const Request& request, ScriptHost& host, const TextConverter& text, LogWriter& log);
Outcome dsnCheck(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome dsnCheckActiveProj(const Request& request, ScriptHost& host, const TextConverter& text);

}  // namespace vernoxa
