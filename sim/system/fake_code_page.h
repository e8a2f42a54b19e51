// A code page, whatever system the tests run on.
#pragma once

#include "text/text_converter.h"

namespace vernoxa {

// 936, 950, 932 (double-byte), 1252 (single-byte) or 65001.
class FakeCodePage final : public CodePage {
 public:
  explicit FakeCodePage(unsigned number = 936) : number_(number) {}

  unsigned number() const override { return number_; }
  bool isLeadByte(char byte) const override;
  std::string toUtf8(std::string_view ansi) const override;
  std::string fromUtf8(std::string_view utf8) const override;
  std::optional<std::string> nameFromUtf8(std::string_view utf8) const override;

  bool throwing = false;  // every conversion throws std::bad_alloc

 private:
  unsigned number_;
};

// Text literals of the tests are in code page 936; this gives one in UTF-8.
std::string utf8(std::u8string_view text);

// A path of which the test's text is a literal, or the other way round.
FilePath pathOf(std::string_view literal);
std::string literalOf(const FilePath& path);

}  // namespace vernoxa
