// Cases written as a text: a row a line, its fields between " | "; spaces around a field do not belong to it. A bar
// with spaces around it is never half a character of a code page.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vernoxa {

inline std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

inline std::vector<std::vector<std::string>> rowsOf(std::string_view text) {
  std::vector<std::vector<std::string>> rows;
  while (!text.empty()) {
    std::string line(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    line += ' ';
    std::vector<std::string> fields;
    for (std::size_t start = 0, bar = 0; bar != std::string::npos; start = bar + 2) {
      bar = line.find(" | ", start);
      fields.emplace_back(trimmed(std::string_view(line).substr(start, bar - start)));
    }
    if (fields.size() > 1 || !fields.front().empty()) {
      rows.push_back(std::move(fields));
    }
  }
  return rows;
}

}  // namespace vernoxa
