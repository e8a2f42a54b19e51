// Code page 936, whatever system the tests run on.
#pragma once

#include "core/code_page.h"

namespace vernoxa {

class FakeCodePage final : public CodePage {
 public:
  std::string toUtf8(std::string_view ansi) const override;
  std::string fromUtf8(std::string_view utf8) const override;

  bool throwing = false;  // every conversion throws std::bad_alloc
};

// Text literals of the tests are in the code page; this gives one in UTF-8.
std::string utf8(std::u8string_view text);

}  // namespace vernoxa
