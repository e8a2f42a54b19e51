// The host's Tcl interpreter as the handlers see it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tcl/script.h"

namespace vernoxa::inline tcl {

struct Evaluation {
  bool ok = false;   // Tcl's own status was TCL_OK
  std::string text;  // result or error text, UTF-8 as Tcl holds it
};

// Host thread only. An evaluation may run the host's event loop, which may call the plug-in's commands again: nothing
// may hold a view into shared state across one.
class ScriptHost {
 public:
  virtual ~ScriptHost() = default;
  // Never throws for an error of the script.
  virtual Evaluation evaluate(const Script& script) = 0;
  // Elements of a Tcl list; `nullopt` for a text that is not a list, which leaves no error text.
  virtual std::optional<std::vector<std::string>> splitList(const std::string& list) = 0;

  // A script that joins a word and the one behind it is evaluated exactly so; only when Tcl answers with an error is
  // the separated one tried, and its result stands.
  Evaluation evaluateJoined(const Script& joined, const Script& separated);
  // The same for a procedure and its quoted argument. A space in the argument would end the joined name, which nobody
  // has then: the separated script is evaluated at once.
  Evaluation evaluateJoined(Start procedure, std::string_view argument, Literal rest = "");

  // The oldest supported hosts, "16.3" and "16.5", hold their texts in the other encoding than all later ones.
  bool isOldHost();
};

}  // namespace vernoxa::inline tcl
