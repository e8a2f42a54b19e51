// The handlers of the companion's requests about the bill of materials and its view.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa::inline system {
class UserMessages;
}  // namespace vernoxa::inline system
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::bom {

Outcome generateBom(const Request& request, ScriptHost& host, const TextConverter& converter, UserMessages& messages);
Outcome switchStickOrNotStick(const Request&, ScriptHost& host, const TextConverter& converter);
Outcome setToNotStick(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome setToStick(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome exitBomViewMode(const Request& request, ScriptHost& host, const TextConverter& converter);
Outcome enterBomViewMode(const Request& request, ScriptHost& host, const TextConverter& converter);

}  // namespace vernoxa::bom
