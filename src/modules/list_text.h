// Builds the nested Tcl lists that the host's placing procedures take.
#pragma once

#include <string_view>

#include "tcl/script.h"

namespace vernoxa::modules {

// Values are UTF-8. Every value arrives at the procedure with its backslashes as they are (doubled in the script, also
// in a braced name, where the procedures know it), and its brackets stand escaped in script and log.
class ListText {
 public:
  explicit ListText(Start start) : script_(start) {}

  ListText& literal(Literal text);
  ListText& bare(std::string_view value);
  ListText& quoted(std::string_view value);
  ListText& braced(std::string_view value);
  // [list "key" "value"]
  ListText& item(std::string_view key, std::string_view value);
  // What `value` gives, or the literal when it is empty.
  ListText& bareOr(std::string_view value, Literal whenEmpty);

  const Script& script() const { return script_; }

 private:
  Script script_;
};

}  // namespace vernoxa::modules
