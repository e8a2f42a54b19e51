// How every step that handles a packet reports that it could not go on.
#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace vernoxa::inline wire {

// Why a step failed, and where to report it. The step itself reports nothing.
struct Failure {
  enum class Where {
    nowhere,  // the reply alone tells that something went wrong
    box,      // a message box
    log,      // a line of the traffic log
    output,   // the standard output
    reply,    // "ErrInfo" of the reply
  };

  Where where = Where::nowhere;
  std::string what;          // everywhere but in a box; code page
  std::u8string_view shown;  // in a box; a literal, since memory may have run out

  static Failure inBox(std::u8string_view text) { return {Where::box, {}, text}; }
};

// The value of a step, or why there is none.
template <class Value>
using Result = std::variant<Value, Failure>;

}  // namespace vernoxa::inline wire
