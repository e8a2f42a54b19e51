// How many handles this process holds, where the system does not say.
#pragma once

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <functional>

#include "support/soak.h"

namespace vernoxa {

// Wine answers nothing when it is asked for a process's handles, but it gives free places away first: the highest place
// among some new handles stays the same as long as nothing leaks, and grows by one for each handle that does. Two
// probes are comparable; their numbers mean nothing else.
struct HandleProbe {
  std::uintptr_t drawing = 0;
  std::uintptr_t windows = 0;
  std::uintptr_t kernel = 0;

  static HandleProbe take() {
    const auto place = [](auto handle) { return reinterpret_cast<std::uintptr_t>(handle) & 0xFFFFU; };
    std::array<HBRUSH, 64> brushes{};
    std::array<HWND, 16> messageWindows{};
    std::array<HANDLE, 16> events{};
    HandleProbe probe;
    for (HBRUSH& brush : brushes) {
      brush = CreateSolidBrush(RGB(1, 2, 3));
      probe.drawing = std::max(probe.drawing, place(brush));
    }
    for (HWND& window : messageWindows) {
      window = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
      probe.windows = std::max(probe.windows, place(window));
    }
    for (HANDLE& event : events) {
      event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
      probe.kernel = std::max(probe.kernel, reinterpret_cast<std::uintptr_t>(event));
    }
    std::for_each(brushes.begin(), brushes.end(), DeleteObject);
    std::for_each(messageWindows.begin(), messageWindows.end(), DestroyWindow);
    std::for_each(events.begin(), events.end(), CloseHandle);
    return probe;
  }
};

// Whether handles stay behind after many calls: one in a hundred calls, beside the few that the system itself takes.
inline bool leavesHandles(int callsInEveryRun, const std::function<void()>& call) {
  const int calls = soakCalls(callsInEveryRun);
  call();
  const HandleProbe before = HandleProbe::take();
  for (int done = 0; done < calls; ++done) {
    call();
  }
  std::printf("%d calls\n", calls);  // the trust run shows how many were made
  const HandleProbe after = HandleProbe::take();
  const auto allowed = static_cast<std::uintptr_t>(calls) / 100 + 16;
  return after.drawing > before.drawing + allowed || after.windows > before.windows + allowed ||
         after.kernel > before.kernel + allowed * 4;  // kernel handles count in fours
}

}  // namespace vernoxa
