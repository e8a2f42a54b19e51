#include "checks/report_commands.h"

#include "support/command_test_tcl.h"
#include "support/table.h"

namespace vernoxa::checks {
namespace {

class ReportCommands : public CommandTest {
 protected:
  // The message that a call sends, decoded from its script; empty if it sends none.
  std::string sent(Command command, const Words& arguments) {
    host_.scripts.clear();
    const CommandResult result = call(command, arguments);
    EXPECT_EQ(result.text, "");
    EXPECT_EQ(result.status, commandDone);
    EXPECT_LE(host_.scripts.size(), 1U);
    return host_.scripts.empty() ? "" : messageOf(splitFields(host_.scripts.front(), '"').at(1)).message;
  }

  std::map<std::string, Command> checks_ = {{"1001", plugin::run<sendRefRepetition>},
                                            {"1002", plugin::run<sendIllegalChar>},
                                            {"1003", plugin::run<sendPinNc>},
                                            {"1004", plugin::run<sendNetlist>}};
};

std::string gbk(const std::string& text) {
  return literalOf(FilePath::fromUtf8(text));
}

std::string finding(const std::string& id, const std::string& actual, const std::string& comment,
                    const std::string& position, const std::string& page, const std::string& schematic) {
  return R"({"Command":"DsnCheck_Result","Data":{"id":")" + id + R"(","RequiredValue":"","ActualValue":")" + actual +
         R"(","Comment":")" + comment + R"(","PagePos":")" + position + R"(","PageName":")" + page +
         R"(","ViewBox":"","Sch":")" + schematic + R"("},"Result":"0","ErrInfo":""})";
}

// The check, the words of its command; in the message the value, the comment, the page and the schematic.
constexpr std::u8string_view findings =
    u8"1001 | NoRefNum,R?,-,S,P,1,2   | R?      | R?器件未编号          | P               | S\n"
    u8"1001 | RefRepe,R1,R1B,S,P,1,2  | R1B     | R1位号重名            | P               | S\n"
    u8"1002 | Value,1\"k,S,P,-5,       | 1\"k     | Value属性包含非法字符 | P               | S\n"
    u8"1003 | U3,7,S,A\\B,10,20        | U3.7    | 引脚未连接            | A[;fanxiegan;]B | S\n"
    u8"1003 | U3,,,,,                 | U3.     | 引脚未连接            |                 |\n"
    u8"1004 | NoFootprint,R1,x,页,页,, | R1      | R1器件无封装          | 页              | 页\n"
    u8"1004 | NoPinNumber,U1,A,S,乗,, | U1.A    | U1引脚未编号          | 乗              | S\n"
    u8"1004 | RepePinName,U1,A,S,P,,  | U1.A    | U1引脚名重复          | P               | S\n"
    u8"1004 | RepePinNum,U1,3,S,P,,   | U1.3    | U1引脚编号重复        | P               | S\n"
    u8"1004 | ValueDiff,R1,10k,S,P,,  | R1(10k) | R1同一器件Value值不同 | P               | S\n";

TEST_F(ReportCommands, FindingBecomesOneMessage) {
  for (const auto& row : rowsOf(utf8(findings))) {
    const Words words = splitFields(row[1], ',');
    const std::string position = words.end()[-2] + " " + words.end()[-1];
    EXPECT_EQ(sent(checks_.at(row[0]), words),
              finding(row[0], row[2], gbk(row[3]), position, gbk(row[4]), gbk(row[5])));
  }
  EXPECT_EQ(sent(plugin::run<sendPinNc>, {"U3"}), sent(plugin::run<sendPinNc>, {"U3", "", "", "", "", ""}));
  // A name of several characters stays UTF-8; those above are too short to be recognised and go into the code page.
  const std::string page = utf8(u8"电源页");
  EXPECT_EQ(sent(plugin::run<sendNetlist>, {"FootprintDiff", "R1", "x", page + "x", page + "\\1", "", ""}),
            finding("1004", "R1", u8"R1器件存在多个封装"_gbk, " ", page + "[;fanxiegan;]1", page + "x"));
}

TEST_F(ReportCommands, CallWithoutFindingEndsItsCheck) {
  for (const auto& [id, command] : checks_) {
    EXPECT_EQ(sent(command, {}),
              R"({"Command":"DsnCheck_EndResult","Data":{"id":")" + id + R"("},"Result":"0","ErrInfo":""})");
  }
  for (const char* kind : {"", "norefnum", "NoRefNum ", "ValueDiff"}) {
    EXPECT_EQ(sent(plugin::run<sendRefRepetition>, {kind, "R1", "", "S", "P", "1", "2"}), "") << kind;
  }
}

// The report, the properties that the host gives for it, and what its message has of them.
constexpr std::u8string_view reports =
    u8R"(
Dsn       |                                                           |
Dsn       | {Value 10k} {short} {ID 7} {Path C:\\a} {Reference R1}    | "Value":"10k","Path":"C:\\a",
Dsn       | {Name x} {ID x} {{Implementation Type} x} {Implementation x} {Reference x} |
Dsn       | {{Implementation Path} x} {Designator x} {{Part Reference} x} {{Pin Names Rotate} x} | "Pin Names Rotate":"x"
Olb       | {Lib C:\\lib\\a.olb} {ID 7} {Designator A extra}          | "Lib":"C:\\lib\\a.olb","ID":"7","Designator":"A"
Olb       | {Name x} {{Pin Numbers Visible} x} {{Implementation Type} x} {Implementation x} |
Olb       | {{Implementation Path} x} {{Pin Names Visible} x} {{Pin Names Rotate} x} {{Part Reference} x} {Reference x} |
)"
    u8R"(OlbObject | {Lib C:\\lib\\a.olb} {{Part Reference} R} {名 贴片电阻}   | "Lib":"C:\lib\a.olb","名":"贴片电阻"
OlbObject | {broken                                                   |
)";

TEST_F(ReportCommands, PackageReportKeepsOrderAndComma) {
  for (const auto& row : rowsOf(utf8(reports))) {
    const bool object = row[0] == "OlbObject";
    const Command command = object            ? plugin::run<sendOlbObjectPackageInfo>
                            : row[0] == "Olb" ? plugin::run<sendOlbPackageInfo>
                                              : plugin::run<sendDsnPackageInfo>;
    EXPECT_EQ(sent(command, {row[1]}), R"({"Command":"Get)" + row[0] + (object ? "" : "All") +
                                           R"(PackageInfo_EndResult","Result":"0","Data":{"item":[{)" + gbk(row[2]) +
                                           "}]}}");
  }
  EXPECT_EQ(sent(plugin::run<sendDsnPackageInfo>, {}), sent(plugin::run<sendDsnPackageInfo>, {""}));
}

TEST_F(ReportCommands, WhatTheHostIsAskedForIsLogged) {
  enableTraffic();
  for (const auto& [request, script] : {std::pair{"GetDsnAllPackageInfo", "GetAllPackage \"a\""},
                                        std::pair{"GetOlbAllPackageInfo", "GetOlbAllPackage \"a\""},
                                        std::pair{"GetOlbObjectPackageInfo", "GetOlbObjectPackage \"a\"R1"}}) {
    replyTo(plugin::companionEndpoint(),
            std::string(R"({"Command":")") + request + R"(","Data":{"ProjectPath":"a","ObjName":"R1"}})", host_);
    EXPECT_THAT(traffic(), testing::HasSubstr(script));
  }
}

TEST_F(ReportCommands, AnswerOfTheSenderIsLogged) {
  enableTraffic();
  host_.answer("sendPacketGlobalHandle", "no connection", false);
  sent(plugin::run<sendPinNc>, {});
  EXPECT_TRUE(traffic().ends_with("sendPacketGlobalHandle \"no connection\"")) << traffic();
}

}  // namespace
}  // namespace vernoxa::checks
