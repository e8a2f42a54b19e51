// Threads that nobody waits for.
#pragma once

#include <functional>

namespace vernoxa {

// Runs the body on a new thread; drops it when there is no thread. An exception of the body ends its thread in
// silence: it must not reach the system's code.
void startDetachedThread(std::function<void()> body);

}  // namespace vernoxa
