// The operating system that the DLL runs on.
#pragma once

#include "plugin/world.h"

namespace vernoxa {

// References to objects that live until the process ends.
World realWorld();

}  // namespace vernoxa
