// The rows of the request tables: what the companion and the link thread may ask.
//
// A handler is a function from a request to an outcome. It never sees packet text, the packet lock or Tcl's result. Its
// parameters name the parts of the call and of the session that it works on.
#pragma once

#include <iterator>
#include <string_view>

#include "dispatch/description.h"
#include "dispatch/outcome.h"
#include "dispatch/request.h"

namespace vernoxa::plugin {
class Session;
}  // namespace vernoxa::plugin
namespace vernoxa::inline system {
class LogWriter;
}  // namespace vernoxa::inline system
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl

namespace vernoxa::inline dispatch {

// What belongs to one call. The row's function finds the handler's parameters here and in the session, which dispatch
// hands through without knowing it.
struct RequestCall {
  const Request& request;
  ScriptHost& host;
  LogWriter& log;  // the traffic log, open for the length of the call
};

using Handler = Outcome (*)(RequestCall&, plugin::Session&);

struct HandlerRow {
  const char* name;
  Handler run;
  Members members = {};
  Calls calls = {};
  Answer answer = {};
  const char* purpose = "";                                       // one sentence
  void (*whenRefused)(RequestCall&, plugin::Session&) = nullptr;  // called whatever refused the request
};

// Rows of one table have different names, or the program does not compile.
template <class Rows>
consteval bool namesDiffer(const Rows& rows) {
  for (std::size_t first = 0; first < std::size(rows); ++first) {
    for (std::size_t second = first + 1; second < std::size(rows); ++second) {
      if (std::string_view(rows[first].name) == rows[second].name) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace vernoxa::inline dispatch
