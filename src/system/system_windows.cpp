#include "system/system_windows.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <cstdio>
#include <new>

#include "system/handle_windows.h"
#include "system/wide_text_windows.h"

namespace vernoxa {
namespace {

// Win32 mutexes let their own thread in again.
class WindowsLock final : public Lock {
 public:
  WindowsLock() : mutex_(CreateMutexA(nullptr, FALSE, nullptr)) {
    if (!mutex_) {
      throw std::bad_alloc();
    }
  }
  void acquire() override { WaitForSingleObject(mutex_.get(), INFINITE); }
  void release() override { ReleaseMutex(mutex_.get()); }

 private:
  KernelHandle mutex_;
};

}  // namespace

LocalTime WindowsClock::localTime() {
  SYSTEMTIME time{};
  GetLocalTime(&time);
  return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds};
}

std::chrono::milliseconds WindowsClock::monotonic() {
  return std::chrono::milliseconds(static_cast<std::int64_t>(GetTickCount64()));
}

void WindowsClock::sleep(std::chrono::milliseconds duration) {
  Sleep(static_cast<DWORD>(duration.count()));
}

WindowsCodePage::WindowsCodePage() : number_(GetACP()) {
  for (std::size_t byte = 0; byte < leadBytes_.size(); ++byte) {
    leadBytes_[byte] = IsDBCSLeadByteEx(number_, static_cast<BYTE>(byte)) != 0;
  }
}

std::string WindowsCodePage::toUtf8(std::string_view ansi) const {
  return fromWide(toWide(ansi, number_), CP_UTF8);
}

std::string WindowsCodePage::fromUtf8(std::string_view utf8) const {
  return fromWide(toWide(utf8, CP_UTF8), number_);
}

std::optional<std::string> WindowsCodePage::nameFromUtf8(std::string_view utf8) const {
  return nameFromWide(toWide(utf8, CP_UTF8), number_);
}

std::optional<Guid> WindowsGuidSource::create() {
  GUID guid{};
  if (CoCreateGuid(&guid) != S_OK) {
    return std::nullopt;
  }
  Guid result{static_cast<std::uint32_t>(guid.Data1), guid.Data2, guid.Data3, {}};
  std::copy(std::begin(guid.Data4), std::end(guid.Data4), result.data4.begin());
  return result;
}

std::unique_ptr<Lock> WindowsLockSource::create() {
  return std::make_unique<WindowsLock>();
}

void WindowsStandardOutput::print(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

}  // namespace vernoxa
