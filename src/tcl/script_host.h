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

// Host thread only. An evaluation may run the host's event loop, which may call the plug-in's commands again: no caller
// may hold a view into shared state meanwhile.
class ScriptHost {
 public:
  virtual ~ScriptHost() = default;
  // Never throws for an error of the script.
  virtual Evaluation evaluate(const Script& script) = 0;
  // Elements of a Tcl list; `nullopt` for a text that is not a list, which leaves no error text.
  virtual std::optional<std::vector<std::string>> splitList(const std::string& list) = 0;

  // Evaluates `joined`, in which two words stand without a space between them. If that ends in an error, evaluates
  // `separated`, which has the space, and gives its result.
  Evaluation evaluateJoined(const Script& joined, const Script& separated);
  // The same for a procedure and its quoted argument. An argument with a space cannot be part of a procedure's name:
  // then only the separated script is evaluated.
  Evaluation evaluateJoined(Start procedure, std::string_view argument, Literal rest = "");

  // Whether it is one of the oldest supported hosts, "16.3" and "16.5", which give text in the code page. Later ones
  // give UTF-8.
  bool isOldHost();
};

}  // namespace vernoxa::inline tcl
