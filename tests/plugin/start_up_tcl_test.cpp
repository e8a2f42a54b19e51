#include "plugin/start_up.h"

#include <gmock/gmock.h>
#include <tcl.h>

#include "modules/library_files.h"
#include "plugin/command_table.h"
#include "support/loaded_plug_in_tcl.h"
#include "text/gbk_literal.h"
#include "text/outside_json.h"
#include "text/text.h"
#include "wire/packet_text.h"

namespace vernoxa::plugin {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

// The link threads that would run now.
std::vector<std::shared_ptr<LinkThreadParts>> threads;

// What that thread's attempt to connect answers.
int answered = 0;
void connectToHost(link::SocketClient& client) {
  answered = client.connect(link::localAddress, link::hostPort);
}
int connectOnThread(std::size_t index) {
  runOnLinkThread<connectToHost>(*threads.at(index));
  return answered;
}

class StartUpTest : public testing::Test, protected LoadedPlugIn {
 protected:
  StartUpTest() {
    plugIn.startLinkThread = [](std::shared_ptr<LinkThreadParts> thread) { threads.push_back(std::move(thread)); };
    fake.files.addFolder("C:\\App\\bin");
    interp_.define(
        {"RegisterAction", "UnregisterAction", "InsertXMLMenu", "creatServerForPthread", "::capGenerateBOMUtil::init"});
  }
  ~StartUpTest() override { threads.clear(); }

  void load() {
    startUp(interp_.get(), plugIn);
    interp_.evaluate("");  // what a script left as its result
  }
  void configure(const std::string& text) { fake.files.addFile("C:\\App\\Config\\App.txt", text); }

  TclInterp interp_;
};

TEST_F(StartUpTest, HostSeesItsCallsInOrder) {
  const std::string script = startUpScript().text();
  EXPECT_EQ(script.size(), 683U);
  EXPECT_EQ(splitFields(script, '\n').size(), 15U);
  EXPECT_EQ(replaceAll(script, "\r\n", "").find_first_of("\r\n"), std::string::npos);
  load();
  const std::string menu = "\xC0\xBD\xCD\xBC\xD6\xFA\xCA\xD6";  // 澜图助手 as stored, which Tcl takes byte by byte
  EXPECT_THAT(
      interp_.calls,
      ElementsAre(Words{"::capGenerateBOMUtil::init"},
                  Words{"RegisterAction", "_cdnOrAtCaptureExit", "alwaysEnable", "", "exitOpration", ""},
                  Words{"creatServerForPthread"},
                  Words{"RegisterAction", "_cdnOrSchViewCmdComplete", "alwaysEnable", "", "MouseClick", ""},
                  Words{"InsertXMLMenu", menu + " 1 " + menu + " {action " + menu + " 0 Operation ShareModule}"},
                  Words{"RegisterAction", "Operation", "checkSocketConnect", "", "ShowMainForm", ""},
                  Words{"RegisterAction", "ShareModule", "checkSocketConnect", "", "checkSocketConnect", ""}));
  interp_.calls.clear();
  interp_.evaluate("LoadAction; unloadAction");
  ASSERT_EQ(interp_.calls.size(), 2U);
  EXPECT_THAT(interp_.calls[0], ElementsAre("RegisterAction", testing::EndsWith("  Alt+S"), "alwaysEnable", "Alt+S",
                                            "switchStickOrNotStick", "Schematic"));
  EXPECT_EQ(interp_.calls[1], (Words{"UnregisterAction", interp_.calls[0][1]}));
}

TEST_F(StartUpTest, LeavesTheDefaults) {
  load();
  EXPECT_EQ(interp_.evaluate("package present Vernoxa").text, "1.0");
  EXPECT_EQ(plugIn.session->language, "EN");
  EXPECT_EQ(part<ProjectFolder>().get().utf8(), "C:\\App");
  EXPECT_EQ(part<HostExecutable>().get().utf8(), "");
  EXPECT_FALSE(part<link::CompanionLink>().clientCreated());
  EXPECT_EQ(part<modules::PlacementContext>().placeState, 0);
  EXPECT_THAT(threads, ElementsAre(testing::Pointer(&plugIn.session->linkThread())));
  EXPECT_EQ(fake.sockets.started(), 1);
  EXPECT_EQ(fake.sockets.opened(), 0);
  EXPECT_EQ(crashes(), "");
}

TEST_F(StartUpTest, ConfigurationAndProcessesDecideOnTheCompanion) {
  const std::vector<Process> absent = {{"idle", 0}, {"LanTuZS.exe", 9}};
  const std::vector<Process> running = {{"idle", 0}, {"lantuzs.exe", 9}};
  const std::string longest = R"({"AlgMenuLang":"CN"})" + std::string(longestOutsideJson - 20, ' ');
  const std::tuple<std::string, std::vector<Process>, const char*, std::size_t> rows[] = {
      {R"({"AlgMenuLang":"CN","StartWithCadence":"1"})", absent, "CN", 1},
      {R"({"AlgMenuLang":"CN","StartWithCadence":"1"})", running, "CN", 0},
      {R"({"AlgMenuLang":null})", absent, "EN", 0},
      {longest, absent, "CN", 0},
      {longest + " ", absent, "EN", 0},
  };
  for (const auto& [configuration, processes, language, started] : rows) {
    configure(configuration);
    fake.processes.list = processes;
    fake.processes.started.clear();
    load();
    EXPECT_EQ(plugIn.session->language, language) << configuration.substr(0, 50);
    EXPECT_EQ(fake.processes.started.size(), started) << configuration.substr(0, 50);
  }
  EXPECT_THAT(fake.messages.shown(), IsEmpty());
}

TEST_F(StartUpTest, FailedLaunchIsShownAndTheStartGoesOn) {
  configure(R"({"StartWithCadence":"1"})");
  fake.processes.startThrows = true;
  load();
  EXPECT_THAT(fake.messages.shown(), ElementsAre(u8"澜图助手启动失败"_gbk));
  EXPECT_EQ(threads.size(), 1U);
  EXPECT_EQ(crashes(), "");
}

// A host without one procedure of the start-up script loses what stands after it, and nothing else.
TEST_F(StartUpTest, MissingProceduresOfTheHost) {
  fake.files.addFolder("C:\\App\\Script\\Log");
  for (const char* const missing :
       {"::capGenerateBOMUtil::init", "creatServerForPthread", "InsertXMLMenu", "RegisterAction"}) {
    interp_.evaluate(std::string("rename ") + missing + " {}");
    interp_.calls.clear();
    load();
    EXPECT_THAT(interp_.calls, Each(testing::Not(Contains(missing)))) << missing;
    EXPECT_TRUE(plugIn.session) << missing;
    EXPECT_EQ(interp_.evaluate("getOpenFileCount").text, "0") << missing;
    EXPECT_EQ(logMessages(fake.files.bytes("C:\\App\\Script\\Log\\schLog.txt")),
              std::string("GetACP 936\nstart-up script: invalid command name \"") + missing + "\"");
    interp_.define(missing);
  }
  EXPECT_EQ(threads.size(), 4U);
  EXPECT_EQ(crashes(), "");
}

TEST_F(StartUpTest, ExceptionEndsTheStartWhereItHappened) {
  configure(R"({"AlgMenuLang":"CN","StartWithCadence":"1"})");
  fake.locks.failing = true;
  load();
  EXPECT_FALSE(plugIn.session);
  EXPECT_THAT(threads, IsEmpty());
  EXPECT_THAT(fake.processes.started, IsEmpty());
  EXPECT_EQ(fake.sockets.started(), 0);

  fake.locks.failing = false;
  fake.files.faults.failCall(1, Faults::Kind::throwBadAlloc);  // the configuration
  load();
  EXPECT_TRUE(plugIn.session);
  EXPECT_EQ(plugIn.session->language, "EN");
  EXPECT_THAT(threads, IsEmpty());
  EXPECT_EQ(crashes(), "Vernoxa_Init\nVernoxa_Init");

  fake.locks.failing = true;
  load();
  EXPECT_FALSE(plugIn.session);  // nor the former one, whose client is retired
}

TEST_F(StartUpTest, SecondLoadReplacesTheStateAndRetiresTheClient) {
  load();
  interp_.define("InitPath", "a.dsn;b.dsn");
  interp_.evaluate("packetParserForPthread " + packetTextOf(R"({"Command":"GetNewOpenPath"})"));
  EXPECT_EQ(interp_.evaluate("getOpenFileCount").text, "2");
  fake.sockets.listen(link::hostPort, {{}, StreamEnd::hang, nullptr});
  EXPECT_EQ(connectOnThread(0), 0);
  load();
  EXPECT_EQ(interp_.evaluate("getOpenFileCount").text, "0");
  ASSERT_EQ(threads.size(), 2U);
  EXPECT_NE(threads[0], threads[1]);
  // The first thread goes on with its own client, which only fails.
  EXPECT_EQ(connectOnThread(0), -1);
  EXPECT_EQ(connectOnThread(1), 0);
  EXPECT_EQ(fake.sockets.stillOpen(), 1);
  threads.clear();
  EXPECT_EQ(fake.sockets.started(), 1);
  EXPECT_FALSE(fake.sockets.misused());
}

// A load from inside a command leaves that command on memory of its own, and so does the end of its interpreter.
TEST_F(StartUpTest, LoadInsideACommand) {
  load();
  std::function<void()> inside = [this] { load(); };
  interp_.define("getDsnPinCount", [&](const Words&) {
    threads.clear();
    inside();
    threads.clear();
    return Evaluation{true, "5"};
  });
  EXPECT_EQ(interp_.evaluate("string length [ReadOpenPath a.dsn]").status, TCL_OK);
  inside = [this] { Tcl_DeleteInterp(interp_.get()); };
  interp_.evaluate("ReadOpenPath a.dsn");
  EXPECT_EQ(crashes(), "");
}

// Each thread has a client of its own, also when the host loads the plug-in while the plug-in asks it for its version.
TEST_F(StartUpTest, LoadInsideALoad) {
  bool inside = false;
  interp_.define("GetProductVersion", [&](const Words&) {
    if (!std::exchange(inside, true)) {
      load();
    }
    return Evaluation{true, "17.2"};
  });
  load();
  ASSERT_EQ(threads.size(), 2U);
  EXPECT_EQ(threads[0].get(), &plugIn.session->linkThread());
  EXPECT_NE(threads[1], threads[0]);
  EXPECT_EQ(crashes(), "");
}

TEST_F(StartUpTest, RegistersTheTableInItsOrder) {
  Words registered;
  interp_.define("seen", [&](const Words& words) {
    registered.push_back(words[1]);
    return Evaluation{true, ""};
  });
  Words expected;
  for (const CommandRow& row : commandTable()) {  // a second registration deletes the first: a trace tells when
    interp_.evaluate(replaceAll("proc NAME args {}; trace add command NAME delete {seen NAME}", "NAME", row.name));
    expected.emplace_back(row.name);
  }
  load();
  EXPECT_EQ(registered, expected);
  for (const std::string& name : expected) {
    Tcl_CmdInfo info;
    ASSERT_NE(Tcl_GetCommandInfo(interp_.get(), name.c_str(), &info), 0);
    EXPECT_EQ(info.objClientData, nullptr);
    EXPECT_EQ(info.deleteProc, nullptr);
  }
}

// Neither while the start-up script runs nor after a start that failed.
TEST_F(StartUpTest, CommandsBeforeTheStateDoNothing) {
  std::string early = "?";
  interp_.define("creatServerForPthread", [&](const Words&) {
    early = interp_.evaluate("sendSaveFile a.dsn").text;
    return Evaluation{true, ""};
  });
  fake.locks.failing = true;  // no session comes about
  load();
  EXPECT_EQ(early, "1");
  for (const CommandRow& row : commandTable()) {
    const std::string_view name = row.name;
    const bool answersOne = name == "ReadOpenPath" || name == "sendSaveFile" || name == "sendCloseFile" ||
                            name == "selectAddOrRemoveFromBom";
    for (const char* const arguments : {"", " {}", " 7b7d", " a b c d e f g"}) {
      const auto result = interp_.evaluate(std::string(row.name) + arguments);
      EXPECT_EQ(result.status, TCL_OK) << row.name;
      EXPECT_EQ(result.text, name == "getOpenFileCount" ? "0" : answersOne ? "1" : "") << row.name;
    }
  }
  EXPECT_EQ(crashes(), "Vernoxa_Init");
  EXPECT_THAT(fake.messages.shown(), IsEmpty());
}

TEST_F(StartUpTest, ExceptionsOfCommandsEndAtTheirGuard) {
  load();
  fake.output.throwing = true;
  EXPECT_EQ(interp_.evaluate("packetParser 7b").text, "command returned bad code: -1");
  EXPECT_EQ(interp_.evaluate("catch {packetParserForPthread 7b} text; set text").text, "");
  interp_.define("getDsnPinCount", utf8(u8"电阻"));
  fake.codePage.throwing = true;  // after that answer, of which nothing is left
  EXPECT_EQ(interp_.evaluate("catch {ReadOpenPath a.dsn} text; set text").text, "");
  EXPECT_EQ(crashes(), "packetParser\npacketParserForPthread\nReadOpenPath");
  fake.codePage.throwing = false;
  fake.output.throwing = false;
  EXPECT_EQ(interp_.evaluate("packetParser 7b").status, TCL_OK);
  EXPECT_EQ(fake.locks.held, 0);
}

TEST_F(StartUpTest, SmallCommands) {
  load();
  EXPECT_EQ(interp_.evaluate("packetParser; packetParserForPthread").text + fake.output.text(), "");
  EXPECT_EQ(interp_.evaluate("getGenerateGuid ignored").text, "1B4E28BA-2FA1-11d2-883F-0016D3CCA427");
  fake.guids.next.reset();
  EXPECT_EQ(interp_.evaluate("getGenerateGuid").text, "");
  part<ProjectFolder>().set(pathOf("E:\\project"));  // reports do not move the installation
  EXPECT_EQ(interp_.evaluate("execTool a b").text, "");
  EXPECT_THAT(fake.processes.started, ElementsAre("C:\\App> lantuzs.exe AutoLogin"));
  fake.clipboard.held = true;
  EXPECT_EQ(interp_.evaluate("writeToClipboard x").status, TCL_ERROR);
}

TEST_F(StartUpTest, MessagesToTheUser) {
  load();
  const std::pair<std::string, const char*> rows[] = {
      {"outputWarming", u8"(i) 请先选中器件"_gbk},
      {"outputError OtherProject", u8"请在同一个项目中选择"_gbk},
      {"outputError NoObject ignored", u8"请选择元件"_gbk},
      {"outputError MoreThanPage", u8"超过page范围,请重新摆放"_gbk},
      {"outputError InvaildObject", u8"非法器件,选择其他器件"_gbk},
      {"outputError InvalidObject", "InvalidObject"},
      {"outputError " + utf8(u8"未知错误"), u8"未知错误"_gbk},
      {"outputError {}", ""},
  };
  for (const auto& [script, shown] : rows) {
    EXPECT_EQ(interp_.evaluate(script).status, TCL_OK) << script;
    EXPECT_EQ(fake.messages.shown().back(), shown) << script;
  }
  EXPECT_EQ(interp_.evaluate("outputError").status, TCL_OK);
  EXPECT_EQ(fake.messages.shown().size(), std::size(rows));
}

TEST_F(StartUpTest, MoreThanPageRemovesOnlyALibraryOfOurs) {
  load();
  part<modules::PlacementContext>().dsnDatPath = "D:\\modules\\m.json";
  fake.files.addFile("D:\\modules\\Test.olb", "");
  interp_.evaluate("outputError MoreThanPage");
  EXPECT_EQ(fake.files.bytes("D:\\modules\\Test.olb"), "");
  part<modules::LibraryFiles>().noteHostMakes(part<modules::LibraryFiles>().newPath());
  interp_.evaluate("outputError NoObject");
  EXPECT_EQ(fake.files.bytes("D:\\modules\\Test.olb"), "");
  interp_.evaluate("outputError MoreThanPage");
  EXPECT_EQ(fake.files.bytes("D:\\modules\\Test.olb"), "(no file)");
}

}  // namespace
}  // namespace vernoxa::plugin
