// Takes values of a request for a script, and results of the host for a reply.
#pragma once

#include <string>
#include <string_view>

#include "dispatch/outcome.h"
#include "dispatch/request.h"
#include "tcl/script.h"

namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::inline dispatch {

// The text of a member of "Data" in UTF-8. Convert first, then double, quote and neutralise.
std::string scriptValue(const Request& request, const TextConverter& converter, std::string_view member);

// "ProjectPath" in UTF-8, backslashes as they came.
std::string projectPath(const Request& request, const TextConverter& converter);

// Doubles the backslashes unless the text holds a doubled one already; the two at the start of a network path do not
// count.
std::string doubledOnce(const std::string& path);

// Success if the host answered "1"; otherwise its answer is the failure.
Outcome doneOrFailure(ScriptHost& host, const TextConverter& converter, const Script& script);

}  // namespace vernoxa::inline dispatch
