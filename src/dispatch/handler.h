// The rows of the request tables: what the companion and the link thread may ask.
//
// A handler is a function from a request to an outcome. It never sees packet text, the packet lock or Tcl's result. Its
// parameters name the parts of the call and of the session that it works on.
#pragma once

#include <algorithm>
#include <iterator>
#include <span>
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

// The members of one request that its row stores in parts of the session.
class StoredMembers {
 public:
  StoredMembers(std::span<const Member> members, const Request& request, plugin::Session& session)
      : members_(members), request_(request), session_(session) {}

  // Stores them, those that are missing or of another kind as empty. A handler does it again where they are to count
  // although the host ran its event loop, in which another request may have stored its own.
  void store() const;

 private:
  const std::span<const Member> members_;
  const Request& request_;
  plugin::Session& session_;
};

// What belongs to one call. The row's function finds the handler's parameters here and in the session, which dispatch
// hands through without knowing it.
struct RequestCall {
  const Request& request;
  ScriptHost& host;
  LogWriter& log;  // the traffic log, open for the length of the call
  const StoredMembers& stored;
};

using Handler = Outcome (*)(RequestCall&, plugin::Session&);

struct HandlerRow {
  const char* name;
  Handler run;
  Members members = {};
  Calls calls = {};
  Answer answer = {};
  const char* purpose = nullptr;                                  // one sentence
  void (*whenRefused)(RequestCall&, plugin::Session&) = nullptr;  // called whatever refused the request
};

// Rows of one table have different names, or the program does not compile.
template <class Rows>
consteval bool namesDiffer(const Rows& rows) {
  for (auto row = std::begin(rows); row != std::end(rows); ++row) {
    if (std::any_of(row + 1, std::end(rows),
                    [row](const auto& other) { return std::string_view(row->name) == other.name; })) {
      return false;
    }
  }
  return true;
}

}  // namespace vernoxa::inline dispatch
