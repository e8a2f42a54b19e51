#include "system/system_windows.h"

#include <memory>

#include "system/handle_windows.h"

namespace vernoxa::inline system {
namespace {

using Body = std::function<void()>;

DWORD WINAPI runBody(LPVOID parameter) {
  const std::unique_ptr<Body> body(static_cast<Body*>(parameter));
  try {
    (*body)();
  } catch (...) {
    return 1;
  }
  return 0;
}

}  // namespace

void startDetachedThread(Body body) {
  auto share = std::make_unique<Body>(std::move(body));
  const KernelHandle thread(CreateThread(nullptr, 0, runBody, share.get(), 0, nullptr));
  if (thread) {
    static_cast<void>(share.release());  // the thread's now
  }
}

}  // namespace vernoxa::inline system
