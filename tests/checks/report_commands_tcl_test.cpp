#include "checks/report_commands.h"

#include <gtest/gtest.h>

#include "support/command_test_tcl.h"
#include "text/gbk_literal.h"

namespace vernoxa::checks {
namespace {

class ReportCommands : public CommandTest {
 protected:
  // The messages that a call sends, each decoded from its script.
  std::vector<std::string> sent(Command command, const Words& arguments) {
    host_.scripts.clear();
    const CommandResult result = call(command, arguments);
    EXPECT_EQ(result.text, "");
    EXPECT_EQ(result.status, commandDone);
    std::vector<std::string> messages;
    for (const std::string& script : host_.scripts) {
      messages.push_back(messageOf(script.substr(sendingScript("").size() - 1, script.rfind('"'))).message);
    }
    return messages;
  }
};

std::string finding(const std::string& id, const std::string& actual, const std::string& comment,
                    const std::string& position, const std::string& page, const std::string& schematic) {
  return R"({"Command":"DsnCheck_Result","Data":{"id":")" + id + R"(","RequiredValue":"","ActualValue":")" + actual +
         R"(","Comment":")" + comment + R"(","PagePos":")" + position + R"(","PageName":")" + page +
         R"(","ViewBox":"","Sch":")" + schematic + R"("},"Result":"0","ErrInfo":""})";
}

TEST_F(ReportCommands, FindingBecomesOneMessage) {
  const std::string page = utf8(u8"页");          // too short to be kept: goes into the code page
  const std::string longPage = utf8(u8"电源页");  // stays UTF-8
  const struct {
    Command command;
    Words arguments;
    std::string expected;
  } cases[] = {
      {plugin::run<sendRefRepetition>,
       {"NoRefNum", "R?", "-", "S", "P", "1", "2"},
       finding("1001", "R?", u8"R?器件未编号"_gbk, "1 2", "P", "S")},
      {plugin::run<sendRefRepetition>,
       {"RefRepe", "R1", "R1B", "S", "P", "1", "2"},
       finding("1001", "R1B", u8"R1位号重名"_gbk, "1 2", "P", "S")},
      {plugin::run<sendIllegalChar>,
       {"Value", "1\"k", "S", "P", "-5", ""},
       finding("1002", "1\"k", u8"Value属性包含非法字符"_gbk, "-5 ", "P", "S")},
      {plugin::run<sendPinNc>,
       {"U3", "7", "S", "A\\B", "10", "20"},
       finding("1003", "U3.7", u8"引脚未连接"_gbk, "10 20", "A[;fanxiegan;]B", "S")},
      {plugin::run<sendNetlist>,
       {"NoFootprint", "R1", "x", page, page, "", ""},
       finding("1004", "R1", u8"R1器件无封装"_gbk, " ", u8"页"_gbk, u8"页"_gbk)},
      {plugin::run<sendNetlist>,
       {"FootprintDiff", "R1", "x", longPage + "x", longPage + "\\1", "", ""},
       finding("1004", "R1", u8"R1器件存在多个封装"_gbk, " ", longPage + "[;fanxiegan;]1", longPage + "x")},
      {plugin::run<sendNetlist>,
       {"NoPinNumber", "U1", "A", "S", utf8(u8"乗"), "", ""},
       finding("1004", "U1.A", u8"U1引脚未编号"_gbk, " ", u8"乗"_gbk, "S")},
      {plugin::run<sendNetlist>,
       {"RepePinName", "U1", "A", "S", "P", "", ""},
       finding("1004", "U1.A", u8"U1引脚名重复"_gbk, " ", "P", "S")},
      {plugin::run<sendNetlist>,
       {"RepePinNum", "U1", "3", "S", "P", "", ""},
       finding("1004", "U1.3", u8"U1引脚编号重复"_gbk, " ", "P", "S")},
      {plugin::run<sendNetlist>,
       {"ValueDiff", "R1", "10k", "S", "P", "", ""},
       finding("1004", "R1(10k)", u8"R1同一器件Value值不同"_gbk, " ", "P", "S")},
      {plugin::run<sendPinNc>, {"U3"}, finding("1003", "U3.", u8"引脚未连接"_gbk, " ", "", "")},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(sent(each.command, each.arguments), std::vector{each.expected});
  }
}

TEST_F(ReportCommands, CallWithoutFindingEndsItsCheck) {
  const struct {
    Command command;
    const char* id;
  } cases[] = {{plugin::run<sendRefRepetition>, "1001"},
               {plugin::run<sendIllegalChar>, "1002"},
               {plugin::run<sendPinNc>, "1003"},
               {plugin::run<sendNetlist>, "1004"}};
  for (const auto& each : cases) {
    EXPECT_EQ(sent(each.command, {}), std::vector{std::string(R"({"Command":"DsnCheck_EndResult","Data":{"id":")") +
                                                  each.id + R"("},"Result":"0","ErrInfo":""})"});
  }
  for (const char* kind : {"", "norefnum", "NoRefNum ", "ValueDiff"}) {
    EXPECT_TRUE(sent(plugin::run<sendRefRepetition>, {kind, "R1", "", "S", "P", "1", "2"}).empty()) << kind;
  }
}

TEST_F(ReportCommands, PackageReportKeepsOrderAndComma) {
  const std::string resistor = u8"贴片电阻"_gbk;
  const struct {
    Command command;
    std::string list;
    std::string expected;
  } cases[] = {
      {plugin::run<sendDsnPackageInfo>, "",
       R"({"Command":"GetDsnAllPackageInfo_EndResult","Result":"0","Data":{"item":[{}]}})"},
      {plugin::run<sendDsnPackageInfo>, "{Name U1} {Value 10k} {short} {ID 7} {Path C:\\\\a} {Reference R1}",
       R"({"Command":"GetDsnAllPackageInfo_EndResult","Result":"0","Data":{"item":[{"Value":"10k","Path":"C:\\a",}]}})"},
      {plugin::run<sendOlbPackageInfo>, "{Lib C:\\\\lib\\\\a.olb} {ID 7} {Designator A extra}",
       R"({"Command":"GetOlbAllPackageInfo_EndResult","Result":"0","Data":{"item":[{"Lib":"C:\\lib\\a.olb","ID":"7",)"
       R"("Designator":"A"}]}})"},
      {plugin::run<sendOlbObjectPackageInfo>,
       "{Lib C:\\\\lib\\\\a.olb} {{Part Reference} R} {" + utf8(u8"名") + " " + utf8(u8"贴片电阻") + "}",
       u8R"({"Command":"GetOlbObjectPackageInfo_EndResult","Result":"0","Data":{"item":[{"Lib":"C:\lib\a.olb","名":")"_gbk +
           resistor + R"("}]}})"},
      {plugin::run<sendDsnPackageInfo>,
       "{Name x} {ID x} {{Implementation Type} x} {Implementation x} {{Implementation Path} x} {Reference x} "
       "{Designator x} {{Part Reference} x} {{Pin Names Rotate} x}",
       R"({"Command":"GetDsnAllPackageInfo_EndResult","Result":"0","Data":{"item":[{"Pin Names Rotate":"x"}]}})"},
      {plugin::run<sendOlbPackageInfo>,
       "{Name x} {{Pin Numbers Visible} x} {{Implementation Type} x} {Implementation x} {{Implementation Path} x} "
       "{{Pin Names Visible} x} {{Pin Names Rotate} x} {{Part Reference} x} {Reference x}",
       R"({"Command":"GetOlbAllPackageInfo_EndResult","Result":"0","Data":{"item":[{}]}})"},
      {plugin::run<sendOlbObjectPackageInfo>, "{broken",
       R"({"Command":"GetOlbObjectPackageInfo_EndResult","Result":"0","Data":{"item":[{}]}})"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(sent(each.command, {each.list}), std::vector{each.expected}) << each.list;
  }
  EXPECT_EQ(sent(plugin::run<sendDsnPackageInfo>, {}), sent(plugin::run<sendDsnPackageInfo>, {""}));
}

TEST_F(ReportCommands, AnswerOfTheSenderIsLogged) {
  enableTraffic();
  host_.answer("sendPacketGlobalHandle", "no connection", false);
  sent(plugin::run<sendPinNc>, {});
  EXPECT_TRUE(traffic().ends_with("sendPacketGlobalHandle \"no connection\"")) << traffic();
}

}  // namespace
}  // namespace vernoxa::checks
