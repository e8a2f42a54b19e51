// The message that hands a shared module over to the companion.
#pragma once

#include <string>
#include <string_view>

#include "text/json.h"

namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::modules {

// What the host's script tells of the selection, UTF-8.
struct UploadedSelection {
  std::string_view sumPins;
  std::string_view selfPins;
  std::string_view copyPrice;
  std::string_view parts;  // "Id,Ref[,Package];..."; an item with fewer fields is skipped
  std::string_view wires;  // items separated by ";"
  std::string_view keys;   // the same
};

// "SelectModule_EndResult" with the picture and the module file that the state names; code page.
Json uploadMessage(const UploadedSelection& selection, const std::string& preview, const std::string& module,
                   const TextConverter& converter);

}  // namespace vernoxa::modules
