// One owner for every kind of Windows handle: a trait names the type, the invalid value and the closing call.
#pragma once

#include <windows.h>

#include <utility>

namespace vernoxa::inline system {

template <class Trait>
class Owned {
 public:
  using Handle = typename Trait::Handle;

  Owned() = default;
  explicit Owned(Handle handle) : handle_(handle) {}
  Owned(Owned&& other) noexcept : handle_(other.release()) {}
  Owned& operator=(Owned&& other) noexcept {
    if (this != &other) {
      reset(other.release());
    }
    return *this;
  }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() { reset(); }

  explicit operator bool() const { return handle_ != Trait::invalid(); }
  Handle get() const { return handle_; }
  Handle release() { return std::exchange(handle_, Trait::invalid()); }

  // The last error stays that of the call before: closing must not hide why something failed.
  void reset(Handle handle = Trait::invalid()) {
    const Handle former = std::exchange(handle_, handle);
    if (former != Trait::invalid()) {
      const DWORD error = GetLastError();
      Trait::close(former);
      SetLastError(error);
    }
  }

 private:
  Handle handle_ = Trait::invalid();
};

// Threads, mutexes: null when there is none.
struct KernelTrait {
  using Handle = HANDLE;
  static Handle invalid() { return nullptr; }
  static void close(Handle handle) { CloseHandle(handle); }
};

// Files and snapshots: -1 when there is none.
struct FileTrait {
  using Handle = HANDLE;
  static Handle invalid() { return INVALID_HANDLE_VALUE; }
  static void close(Handle handle) { CloseHandle(handle); }
};

struct FindTrait {
  using Handle = HANDLE;
  static Handle invalid() { return INVALID_HANDLE_VALUE; }
  static void close(Handle handle) { FindClose(handle); }
};

using KernelHandle = Owned<KernelTrait>;
using FileHandle = Owned<FileTrait>;
using FindHandle = Owned<FindTrait>;

}  // namespace vernoxa::inline system
