#include "designs/file_status_commands.h"

#include "support/command_test_tcl.h"

namespace vernoxa::designs {
namespace {

class FileStatusCommandsTest : public CommandTest {
 protected:
  FileStatusCommandsTest() { hostExecutable.set(pathOf("D:\\Capture.exe")); }
};

TEST_F(FileStatusCommandsTest, MessagesInTheirOrder) {
  const std::string start = R"({"Command":"FileStatus","Result":"0","Data":{"Status":")";
  const std::string host = R"(,"Pid":"4242","AllegroPath":"D:\\Capture.exe")";
  host_.answer("getDsnPinCount", "128");
  EXPECT_EQ(message(plugin::run<readOpenPath>, {"C:\\a.dsn"}),
            start + R"(Open","FileName":"C:\\a.dsn")" + host + R"(,"PinCount":"128"}})");
  EXPECT_EQ(message(plugin::run<sendSaveFile>, {"C:\\a.dsn"}), start + R"(Save","FileName":"C:\\a.dsn")" + host + "}}");
  EXPECT_EQ(message(plugin::run<sendCloseFile>, {"C:\\a.dsn"}), start + R"(Close","FileName":"C:\\a.dsn"}})");
  for (const std::string& path : {utf8(u8"D:\\原理图.dsn"), std::string(u8"D:\\原理图.dsn"_gbk)}) {
    EXPECT_EQ(message(plugin::run<sendCloseFile>, {path}), start + u8R"(Close","FileName":"D:\\原理图.dsn"}})"_gbk);
  }
}

TEST_F(FileStatusCommandsTest, PinsAreCountedByTheFirstThreeCharactersOfTheExtension) {
  const std::pair<const char*, Words> rows[] = {
      {"a.dsn", {"getDsnPinCount \"a.dsn\""}},
      {"a.DSNX", {"getDsnPinCount \"a.DSNX\""}},
      {"a.b.dsn1", {"getDsnPinCount \"a.b.dsn1\""}},
      {"C:\\\\[a] $b\".dsn", {"getDsnPinCount \"C:\\\\\\[a] \\$b\\\".dsn\""}},  // backslashes stay as they came
      {"a.ds", {}},
      {"a.Dsn", {}},
      {"a.dsn.bak", {}},
      {"dsn", {}},
  };
  for (const auto& [path, scripts] : rows) {
    host_.scripts.clear();
    const Json sent = Json::parse(message(plugin::run<readOpenPath>, {path})).document;
    EXPECT_EQ(host_.scripts, scripts) << path;
    EXPECT_EQ(sent.member("Data").member("PinCount").text(), "") << path;
  }
}

TEST_F(FileStatusCommandsTest, EmptyPathGivesNoMessage) {
  for (const Command command : {plugin::run<readOpenPath>, plugin::run<sendSaveFile>, plugin::run<sendCloseFile>}) {
    for (const Words& words : {Words{}, Words{""}}) {
      const CommandResult result = call(command, words);
      EXPECT_EQ(result.text, "");
      EXPECT_EQ(result.status, commandDone);
    }
  }
  EXPECT_TRUE(host_.scripts.empty());
}

TEST_F(FileStatusCommandsTest, TrafficLog) {
  enableTraffic();
  const auto logged = [&](Command command) {
    logs.resetTraffic();
    const std::string packet = call(command, {"a"}).text;
    return replaceAll(replaceAll(traffic(), packet, "PACKET"), messageOf(packet).message, "MESSAGE");
  };
  EXPECT_EQ(logged(plugin::run<readOpenPath>),
            "5962\nReadOpenPath1111111111\nreturn data:MESSAGE\nPACKET\nTcl_SetResult");
  EXPECT_EQ(logged(plugin::run<sendSaveFile>), "return data:MESSAGE\nPACKET\nTcl_SetResult");
  EXPECT_EQ(logged(plugin::run<sendCloseFile>), "6073 Close\nreturn data:MESSAGE\nPACKET\nTcl_SetResult");
}

TEST_F(FileStatusCommandsTest, ABreakIsNoted) {
  companionLink.setClientCreated(true);
  EXPECT_EQ(call(plugin::run<serverLinkBreak>).text, "");
  EXPECT_FALSE(companionLink.clientCreated());
  EXPECT_EQ(companionLink.breaks(), 1U);
}

}  // namespace
}  // namespace vernoxa::designs
