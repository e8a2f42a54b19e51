// Builds the nested Tcl lists that the host's placing procedures take.
#pragma once

#include <string_view>

#include "tcl/script.h"

namespace vernoxa::modules {

// Values are UTF-8. The procedures receive each value with its backslashes unchanged, since the script doubles them. In
// a name in braces they stay doubled, which the procedures expect. Brackets are escaped in the script and its log line.
class ListText {
 public:
  explicit ListText(Start start) : script_(start) {}

  ListText& literal(Literal text);
  ListText& bare(std::string_view value);
  ListText& quoted(std::string_view value);
  ListText& braced(std::string_view value);
  // [list "key" "value"]
  ListText& item(std::string_view key, std::string_view value);
  // The value, or the literal if the value is empty.
  ListText& bareOr(std::string_view value, Literal whenEmpty);

  const Script& script() const { return script_; }

 private:
  Script script_;
};

}  // namespace vernoxa::modules
