// Cases written as a text: a row a line, its fields between " | "; spaces around a field do not belong to it. A bar
// with spaces around it is never half a character of a code page.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/text.h"

namespace vernoxa {

inline std::vector<std::vector<std::string>> rowsOf(std::string_view text) {
  std::vector<std::vector<std::string>> rows;
  for (std::string line : splitItems(text, '\n')) {
    line += ' ';
    std::vector<std::string> fields;
    for (std::size_t start = 0, bar = 0; bar != std::string::npos; start = bar + 2) {
      bar = line.find(" | ", start);
      std::string& field = fields.emplace_back(line.substr(start, bar - start));
      field.erase(0, field.find_first_not_of(' '));
      field.erase(field.find_last_not_of(' ') + 1);
    }
    if (fields.size() > 1 || !fields.front().empty()) {
      rows.push_back(std::move(fields));
    }
  }
  return rows;
}

}  // namespace vernoxa
