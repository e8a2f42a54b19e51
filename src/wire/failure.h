// The one way in which a step of a packet's road says that it could not go on.
#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace vernoxa::inline wire {

// Why a step gave no value, and where that is to be said. The step itself says nothing.
struct Failure {
  enum class Where {
    nowhere,  // the reply alone tells that something went wrong
    box,      // a message box
    log,      // a line of the traffic log
    output,   // the standard output
    reply,    // "ErrInfo" of the reply
  };

  Where where = Where::nowhere;
  std::string what;          // for the code page, but in a box
  std::u8string_view shown;  // in a box: a literal, since memory may be what failed

  static Failure inBox(std::u8string_view text) { return {Where::box, {}, text}; }
};

// What a step gives.
template <class Value>
using Result = std::variant<Value, Failure>;

}  // namespace vernoxa::inline wire
