// Windows' clock, code page, identifiers, locks and standard output.
#pragma once

#include <bitset>

#include "system/clock.h"
#include "system/system.h"
#include "text/code_page.h"

namespace vernoxa {

class WindowsClock final : public Clock {
 public:
  LocalTime localTime() override;
  std::chrono::milliseconds monotonic() override;
  void sleep(std::chrono::milliseconds duration) override;
};

class WindowsCodePage final : public CodePage {
 public:
  WindowsCodePage();

  unsigned number() const override { return number_; }
  bool isLeadByte(char byte) const override { return leadBytes_[static_cast<unsigned char>(byte)]; }
  std::string toUtf8(std::string_view ansi) const override;
  std::string fromUtf8(std::string_view utf8) const override;
  std::optional<std::string> nameFromUtf8(std::string_view utf8) const override;

 private:
  unsigned number_;
  std::bitset<256> leadBytes_;
};

class WindowsGuidSource final : public GuidSource {
 public:
  std::optional<Guid> create() override;
};

class WindowsLockSource final : public LockSource {
 public:
  std::unique_ptr<Lock> create() override;
};

class WindowsStandardOutput final : public StandardOutput {
 public:
  void print(std::string_view text) override;
};

}  // namespace vernoxa
