#include "core/system_windows.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <cstdio>
#include <new>

#include "core/handle_windows.h"
#include "core/wide_text_windows.h"

namespace vernoxa {
namespace {

std::string fromWide(const std::wstring& wide, UINT codePage) {
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(codePage, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(codePage, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
  return text;
}

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

std::string WindowsCodePage::toUtf8(std::string_view ansi) const {
  return fromWide(toWide(ansi, CP_ACP), CP_UTF8);
}

std::string WindowsCodePage::fromUtf8(std::string_view utf8) const {
  return fromWide(toWide(utf8, CP_UTF8), CP_ACP);
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
