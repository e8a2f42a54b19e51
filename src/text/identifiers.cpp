#include "text/identifiers.h"

#include <array>
#include <cstdio>

#include "system/system.h"

namespace vernoxa {

std::string guidText(GuidSource& source) {
  const auto guid = source.create();
  if (!guid) {
    return {};
  }
  const auto& tail = guid->data4;
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%08X-%04X-%04x-%02X%02X-%02X%02X%02X%02X%02X%02X",
                static_cast<unsigned>(guid->data1), static_cast<unsigned>(guid->data2),
                static_cast<unsigned>(guid->data3), tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6],
                tail[7]);
  return buffer.data();
}

}  // namespace vernoxa
