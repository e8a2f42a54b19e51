// The handlers of the companion's requests about reference designators, values and jumps.
#pragma once

#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa {

class ScriptHost;
class TextConverter;

Outcome adjustRefAndValue(const Request&, ScriptHost& host, const TextConverter& text);
Outcome renameRef(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome jumpToDsn(const Request& request, ScriptHost& host, const TextConverter& text);
Outcome jumpToPartRef(const Request& request, ScriptHost& host, const TextConverter& text);

}  // namespace vernoxa
