#include "bom/bom_commands.h"

#include "support/command_test_tcl.h"

namespace vernoxa::bom {
namespace {

using namespace testing;

class BomCommands : public CommandTest {};

std::string line(const std::string& number, const std::string& value) {
  return R"({"PartNumber":")" + number + R"(","Value":")" + value +
         R"(","PartRef":"R1","PartName":"RES","PCBFootprint":"0603","PinNumber":"2"})";
}

TEST_F(BomCommands, PartsBecomeOneMessageWithABoxForEachShortOne) {
  const std::tuple<std::string, std::string, std::size_t> cases[] = {
      {"", "", 0},
      {"x;10k;R1;RES;0603;2", line("", "10k"), 0},
      {"xx;10k;R1;RES;0603;2;more", line("xx", "10k"), 0},
      {"X;;R1;RES;0603;2", line("X", ""), 0},
      {"1;2;3;4;5 {1;a b;R1;RES;0603;2} short {} 2;c;R1;RES;0603;2", line("1", "a b") + "," + line("2", "c"), 3},
      {utf8(u8"料;电阻;R1;RES;0603;2"), line(u8"料"_gbk, u8"电阻"_gbk), 0},
      {"1;\xB5\xE7\xD7\xE8;R1;RES;0603;2", line("1", u8"电阻"_gbk), 0},  // in the code page already
      {"1;a;R1;RES;0603;2 {", "", 0},                                    // no list
  };
  for (const bool added : {true, false}) {
    const Command command = added ? plugin::run<sendAddToBom> : plugin::run<sendRemoveFromBom>;
    const std::string start = added ? R"({"Data":{"Stick":[)" : R"({"Data":{"NotStick":[)";
    const std::string end =
        added ? R"(]},"Command":"AddToBom","Result":"0"})" : R"(]},"Command":"RemoveFromBom","Result":"0"})";
    for (const auto& [parts, lines, boxes] : cases) {
      fake.messages.forget();
      EXPECT_EQ(message(command, {parts}), start + lines + end);
      EXPECT_THAT(fake.messages.shown(), AllOf(SizeIs(boxes), Each(added ? "??BOM??" : "?BOM?????"))) << parts;
    }
    EXPECT_EQ(call(command).text, "");
  }
}

TEST_F(BomCommands, PartsCanBeSelected) {
  EXPECT_EQ(call(plugin::run<selectAddOrRemoveFromBom>).text, "1");
}

}  // namespace
}  // namespace vernoxa::bom
