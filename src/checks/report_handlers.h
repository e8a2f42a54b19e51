// The handlers of the companion's requests for reports. They give no reply: the host's scripts send the results as
// messages of their own.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa::inline system {
class LogWriter;
}  // namespace vernoxa::inline system
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::checks {

Outcome getOlbObjectPackageInfo(const Request& request, ScriptHost& host, const TextConverter& converter,
                                LogWriter& log);
Outcome getDsnAllPackageInfo(const Request& request, ScriptHost& host, const TextConverter& converter, LogWriter& log);
Outcome getOlbAllPackageInfo(const Request& request, ScriptHost& host, const TextConverter& converter, LogWriter& log);
Outcome dsnCheck(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome dsnCheckActiveProj(const Request& request, ScriptHost& host, const TextConverter& converter);

}  // namespace vernoxa::checks
