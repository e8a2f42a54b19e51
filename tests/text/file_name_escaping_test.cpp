#include "text/file_name_escaping.h"

#include <gtest/gtest.h>

namespace vernoxa::inline text {
namespace {

TEST(FileNameEscaping, ReplacesWhatWindowsForbids) {
  const struct {
    std::string_view name;
    std::string_view escaped;
  } cases[] = {
      {"", ""},
      {"S@!@A/B:1@!@K.json", "S@!@A[;xiegan;]B[;maohao;]1@!@K.json"},
      {R"(\/:*?"<>|)",
       "[;fanxiegan;][;xiegan;][;maohao;][;xinghao;][;wenhao;][;yinhao;][;xiaoyuhao;][;dayuhao;][;shugan;]"},
      {"::", "[;maohao;][;maohao;]"},
      {"a[;maohao;]b", "a[;maohao;]b"},
      {"\xE7\x94\xB5|\xE6\xBA\x90.json", "\xE7\x94\xB5[;shugan;]\xE6\xBA\x90.json"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(escapedFileName(each.name), each.escaped) << each.name;
  }
}

TEST(FileNameEscaping, NoNameIsADeviceOrAnotherNameOfAFile) {
  const struct {
    std::string_view name;
    std::string_view plain;
  } cases[] = {
      {"CON.json", "_CON.json"},
      {"nul", "_nul"},
      {"aux", "_aux"},
      {"Aux.b.json", "_Aux.b.json"},
      {"PRN .json", "_PRN .json"},
      {"com1.json", "_com1.json"},
      {"LPT9", "_LPT9"},
      {"COM0.json", "COM0.json"},
      {"COM10.json", "COM10.json"},
      {"CONE.json", "CONE.json"},
      {"CON@!@P.json", "CON@!@P.json"},
      {"ACON", "ACON"},
      {"a:b.json", "a-b.json"},
      {"CON:.json", "_CON-.json"},
      {"LPT.json", "LPT.json"},
      {"COMX", "COMX"},
      {"~.json", "~.json"},
      {"CO", "CO"},
      {"", ""},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(plainFileName(each.name), each.plain) << each.name;
  }
}

}  // namespace
}  // namespace vernoxa::inline text
