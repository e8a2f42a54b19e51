// Values from outside as somebody would send them who wants a script to run something else.
#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace vernoxa {

// Mostly the characters that mean something to Tcl.
class HostileValues {
 public:
  explicit HostileValues(std::uint32_t seed = 20240305) : random_(seed) {}

  std::string next() {
    static constexpr std::string_view sharp = "\\\\\\[]{}\"$;# \t\n\r\v\f(),:*xu07nab\x80\x84\xC0\xE4\xB8\xAD\xF0";
    std::string value;
    for (std::size_t left = random_() % 12; left > 0; --left) {
      const auto kind = random_() % 8;
      if (kind == 0) {
        value += pieces[random_() % pieces.size()];
      } else {
        value += kind == 1 ? static_cast<char>(1 + random_() % 255) : sharp[random_() % sharp.size()];
      }
    }
    return value;
  }

 private:
  static constexpr std::array<std::string_view, 8> pieces = {"[exit]", "${a}",   "$::a(", "\\\n",
                                                             "{*}",    "\\x5b1", "]; q ", "} q {"};
  std::mt19937 random_;
};

}  // namespace vernoxa
