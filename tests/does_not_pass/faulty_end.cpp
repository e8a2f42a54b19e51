// Tells that all is well, and then faults while the process ends, on its first thread beside another one, or on that
// other one: faulty_end none|exit|thread
#include <windows.h>

#include <cstdlib>
#include <fstream>
#include <string_view>
#include <thread>

namespace {

void fault() {
  RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
}

}  // namespace

int main(int count, char** words) {
  const std::string_view where = count > 1 ? words[1] : "";
  if (const char* const ended = std::getenv("VERNOXA_ENDED")) {
    std::ofstream(ended) << 0;
  }
  if (where == "exit") {
    std::thread([] { Sleep(INFINITE); }).detach();
    std::atexit(fault);
  } else if (where == "thread") {
    std::atexit([] { Sleep(10000); });
    std::thread([] {
      Sleep(100);
      fault();
    }).detach();
  }
  return where.empty();
}
