// The whole protocol as one JSON document, out of the tables that the plug-in runs on.
#pragma once

#include <string>

#include "dispatch/description.h"

namespace vernoxa {

struct CommandRow;

// UTF-8, with a line end at its end. docs/protocol.schema.json says what it holds.
std::string protocolJson();

// The arguments as a usage line shows them: optional ones between question marks, all of them when none need be given.
std::string usageOf(const CommandRow& row);

}  // namespace vernoxa
