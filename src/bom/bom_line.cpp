#include "bom/bom_line.h"

#include "text/text.h"

namespace vernoxa {

std::vector<std::string> bomFields(std::string_view text) {
  std::vector<std::string> fields = splitFields(text, ';');
  fields.resize(fields.size() < bomFieldNames.size() ? 0 : bomFieldNames.size());
  return fields;
}

Json bomLine(const std::vector<std::string>& fields) {
  Json line = Json::object();
  for (std::size_t index = 0; index < bomFieldNames.size(); ++index) {
    line.add(bomFieldNames[index], fields[index]);
  }
  return line;
}

}  // namespace vernoxa
