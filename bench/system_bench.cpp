// What the two system calls of every packet cost on this Windows: the packet lock and the look for the log folder.
#include <chrono>
#include <cstdio>

#include "system/system_windows.h"

namespace {

constexpr int rounds = 2000;

template <class Body>
double microsecondsEach(Body body) {
  const auto start = std::chrono::steady_clock::now();
  for (int round = 0; round < rounds; ++round) {
    body();
  }
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count() / rounds;
}

}  // namespace

int main() {
  const auto files = vernoxa::windowsFiles();
  const auto lock = vernoxa::windowsLocks()->create();
  const double locking = microsecondsEach([&] {
    lock->acquire();
    lock->release();
  });
  const double looking =
      microsecondsEach([&] { files->attributes(vernoxa::FilePath::fromUtf8("C:\\no such folder\\Script\\Log")); });
  std::printf("packet lock, taken and given back: %.1f us; look for the log folder: %.1f us\n", locking, looking);
  return 0;
}
