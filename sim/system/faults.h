// Makes the n-th call of a stand-in fail, so that a loop over n fails each call of an operation once.
#pragma once

#include <mutex>
#include <new>

namespace vernoxa {

class Faults {
 public:
  enum class Kind { fail, throwBadAlloc };

  // Counts from now on; 0 means that nothing fails any more.
  void failCall(int number, Kind kind = Kind::fail) {
    const std::lock_guard lock(guard_);
    calls_ = 0;
    number_ = number;
    kind_ = kind;
  }
  int calls() const {
    const std::lock_guard lock(guard_);
    return calls_;
  }
  // True when this call has to fail; throws std::bad_alloc when it has to throw.
  bool strike() {
    const std::lock_guard lock(guard_);
    if (++calls_ != number_) {
      return false;
    }
    if (kind_ == Kind::throwBadAlloc) {
      throw std::bad_alloc();
    }
    return true;
  }

 private:
  mutable std::mutex guard_;
  int calls_ = 0;
  int number_ = 0;
  Kind kind_ = Kind::fail;
};

}  // namespace vernoxa
