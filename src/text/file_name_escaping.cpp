#include "text/file_name_escaping.h"

#include <algorithm>

#include "text/text.h"

namespace vernoxa::inline text {
namespace {

struct Marker {
  char character;
  std::string_view text;
};

constexpr Marker markers[] = {{'\\', "[;fanxiegan;]"}, {'/', "[;xiegan;]"},  {':', "[;maohao;]"},
                              {'*', "[;xinghao;]"},    {'?', "[;wenhao;]"},  {'"', "[;yinhao;]"},
                              {'<', "[;xiaoyuhao;]"},  {'>', "[;dayuhao;]"}, {'|', "[;shugan;]"}};

std::string_view markerOf(const char& character) {
  for (const Marker& marker : markers) {
    if (marker.character == character) {
      return marker.text;
    }
  }
  return {&character, 1};
}

char upperCase(char byte) {
  return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

// As Windows looks at names: up to the first dot or colon, without spaces at the end, without regard to case
// ("Naming Files, Paths, and Namespaces" in its documentation).
bool isDevice(std::string_view name) {
  std::string base(name.substr(0, name.find_first_of(".:")));
  base.erase(base.find_last_not_of(' ') + 1);
  std::transform(base.begin(), base.end(), base.begin(), upperCase);
  const bool port = base.size() == 4 && (base.starts_with("COM") || base.starts_with("LPT"));
  return base == "CON" || base == "NUL" || base == "AUX" || base == "PRN" || (port && base[3] >= '1' && base[3] <= '9');
}

}  // namespace

std::string escapedFileName(std::string_view name) {
  std::string escaped;
  escaped.reserve(name.size());
  for (const char& character : name) {
    escaped.append(markerOf(character));
  }
  return escaped;
}

std::string plainFileName(std::string_view name) {
  return (isDevice(name) ? "_" : "") + replaceAll(name, ":", "-");
}

}  // namespace vernoxa::inline text
