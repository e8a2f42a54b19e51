#include "system/system_windows.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <bitset>
#include <cstdio>
#include <new>

#include "system/handle_windows.h"
#include "system/wide_text_windows.h"

namespace vernoxa::inline system {
namespace {

// Win32 mutexes are recursive.
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

class WindowsClock final : public Clock {
 public:
  LocalTime localTime() override {
    SYSTEMTIME time{};
    GetLocalTime(&time);
    return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds};
  }

  std::chrono::milliseconds monotonic() override {
    return std::chrono::milliseconds(static_cast<std::int64_t>(GetTickCount64()));
  }

  void sleep(std::chrono::milliseconds duration) override { Sleep(static_cast<DWORD>(duration.count())); }
};

class WindowsCodePage final : public CodePage {
 public:
  WindowsCodePage() : number_(GetACP()) {
    for (std::size_t byte = 0; byte < leadBytes_.size(); ++byte) {
      leadBytes_[byte] = IsDBCSLeadByteEx(number_, static_cast<BYTE>(byte)) != 0;
    }
  }

  unsigned number() const override { return number_; }
  bool isLeadByte(char byte) const override { return leadBytes_[static_cast<unsigned char>(byte)]; }

  std::string toUtf8(std::string_view ansi) const override { return fromWide(toWide(ansi, number_), CP_UTF8); }

  std::string fromUtf8(std::string_view utf8) const override { return fromWide(toWide(utf8, CP_UTF8), number_); }

  std::optional<std::string> nameFromUtf8(std::string_view utf8) const override {
    return nameFromWide(toWide(utf8, CP_UTF8), number_);
  }

 private:
  const unsigned number_;
  std::bitset<256> leadBytes_;
};

class WindowsGuidSource final : public GuidSource {
 public:
  std::optional<Guid> create() override {
    GUID guid{};
    if (CoCreateGuid(&guid) != S_OK) {
      return std::nullopt;
    }
    Guid result{static_cast<std::uint32_t>(guid.Data1), guid.Data2, guid.Data3, {}};
    std::copy(std::begin(guid.Data4), std::end(guid.Data4), result.data4.begin());
    return result;
  }
};

class WindowsLockSource final : public LockSource {
 public:
  std::unique_ptr<Lock> create() override { return std::make_unique<WindowsLock>(); }
};

class WindowsStandardOutput final : public StandardOutput {
 public:
  void print(std::string_view text) override {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
  }
};

}  // namespace

std::unique_ptr<Clock> windowsClock() {
  return std::make_unique<WindowsClock>();
}

std::unique_ptr<CodePage> windowsCodePage() {
  return std::make_unique<WindowsCodePage>();
}

std::unique_ptr<GuidSource> windowsGuids() {
  return std::make_unique<WindowsGuidSource>();
}

std::unique_ptr<LockSource> windowsLocks() {
  return std::make_unique<WindowsLockSource>();
}

std::unique_ptr<StandardOutput> windowsOutput() {
  return std::make_unique<WindowsStandardOutput>();
}

}  // namespace vernoxa::inline system
