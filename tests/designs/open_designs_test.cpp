// What the link thread hears of open designs over a session.
#include <gmock/gmock.h>

#include "dispatch/dispatcher.h"
#include "support/fake_script_host.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"
#include "text/text.h"
#include "wire/packet_text.h"

namespace vernoxa::designs {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OpenDesignsTest : public testing::Test, protected FakeSession {
 protected:
  Json run(const std::string& command, const std::string& rest = "") {
    return Json::parse(replyTo(plugin::linkEndpoint(), R"({"Command":")" + command + "\"" + rest + "}", host_))
        .document;
  }
  // "opened|closed", "-" for a member that is not there, or the failure.
  std::string newPaths() {
    const Json reply = run("GetNewOpenPath");
    if (reply.member("Result").text() != "0") {
      return std::string(reply.member("ErrInfo").text().value_or("?"));
    }
    const JsonView data = reply.member("Data");
    return std::string(data.member("ProjectPath").text().value_or("-"))
        .append("|")
        .append(data.member("CloseFile").text().value_or("-"));
  }
  void status(const std::string& status, const std::string& name) {
    run("FileStatus", R"(,"Data":{"Status":")" + status + R"(","FileName":")" + doubleBackslashes(name) + "\"}");
  }
  void open(const std::string& paths) { host_.answer("InitPath", paths); }

  FakeScriptHost host_;
};

TEST_F(OpenDesignsTest, ALostReplyLosesNothing) {
  open("a.dsn;b.DSN;");
  EXPECT_EQ(newPaths(), "a.dsn|");
  EXPECT_EQ(newPaths(), "a.dsn|");
  status("Open", "a.dsn");
  EXPECT_EQ(newPaths(), "b.DSN|");
  status("Open", "b.DSN");
  EXPECT_EQ(newPaths(), "-|");
  open("c.dsn");
  EXPECT_EQ(newPaths(), "c.dsn|a.dsn;b.DSN");
  EXPECT_EQ(newPaths(), "c.dsn|a.dsn;b.DSN");
  status("Close", "a.dsn");
  EXPECT_EQ(newPaths(), "c.dsn|b.DSN");
  status("Close", "b.DSN");
  status("Close", "b.DSN");
  open("c.dsn;a.dsn");
  status("Open", "c.dsn");
  EXPECT_EQ(newPaths(), "a.dsn|");  // opened again, told again
}

TEST_F(OpenDesignsTest, NoFileKeepsWhatWasTold) {
  open("a.dsn");
  status("Open", "a.dsn");
  open("a.opj;;b.Dsn");
  EXPECT_EQ(newPaths(), "No file!");
  EXPECT_THAT(part<OpenDesigns>().all(), IsEmpty());
  open("b.dsn");
  EXPECT_EQ(newPaths(), "b.dsn|a.dsn");
}

TEST_F(OpenDesignsTest, UnknownPinCountCountsAsTold) {
  open("a.dsn;b.dsn");
  host_.answer("getDsnPinCount \"a.dsn\"", "-1");
  host_.answer("getDsnPinCount \"b.dsn\"", "12");
  EXPECT_EQ(newPaths(), "a.dsn|");
  run("getDsnPinCount", R"(,"ProjectPath":"b.dsn")");
  EXPECT_EQ(newPaths(), "a.dsn|");
  run("getDsnPinCount", R"(,"ProjectPath":"a.dsn")");
  EXPECT_EQ(newPaths(), "b.dsn|");
}

// The host gives UTF-8, messages bring the code page: one design all the same, and the host gets its own bytes back.
TEST_F(OpenDesignsTest, OneDesignInBothEncodings) {
  const std::string host = utf8(u8"D:\\原理图.dsn");
  open(host + ";b.dsn");
  EXPECT_EQ(newPaths(), host + "|");
  status("Open", u8"D:\\原理图.dsn"_gbk);
  EXPECT_EQ(newPaths(), "b.dsn|");
  open("b.dsn");
  EXPECT_EQ(newPaths(), "b.dsn|" + host);
  status("Close", u8"D:\\原理图.dsn"_gbk);
  EXPECT_EQ(newPaths(), "b.dsn|");
}

// The code page bytes of these names are valid UTF-8 of other names.
TEST_F(OpenDesignsTest, ConvertedNameThatLooksLikeUtf8StaysWhatItIs) {
  const struct {
    std::string host;
    const char* name;
  } rows[] = {{utf8(u8"C:\\鏀惧ぇ.dsn"), u8"C:\\鏀惧ぇ.dsn"_gbk},
              {utf8(u8"D:\\娴嬭瘯\\a.dsn"), u8"D:\\娴嬭瘯\\a.dsn"_gbk}};
  for (const auto& row : rows) {
    open(row.host + ";b.dsn");
    EXPECT_EQ(newPaths(), row.host + "|");
    status("Open", row.name);
    EXPECT_EQ(newPaths(), "b.dsn|");
    status("Open", "b.dsn");
    EXPECT_EQ(newPaths(), "-|");
    open("b.dsn");
    EXPECT_EQ(newPaths(), "-|" + row.host);
    status("Close", row.name);
    EXPECT_EQ(newPaths(), "-|");
    status("Open", row.name);  // of a design that is not open, and so to be closed under the host's name
    EXPECT_EQ(newPaths(), "-|" + row.host);
    status("Close", row.name);
    status("Close", "b.dsn");
  }
}

TEST_F(OpenDesignsTest, DesignsOfOneNameAreToldApartByTheHostsBytes) {
  const std::string name = u8"D:\\原理图.dsn"_gbk;
  const std::string other = utf8(u8"D:\\原理图.dsn");
  open(name + ";" + other);
  EXPECT_EQ(newPaths(), name + "|");
  status("Open", name);
  EXPECT_EQ(newPaths(), other + "|");
  status("Open", name);
  EXPECT_EQ(newPaths(), "-|");
  open(other);
  EXPECT_EQ(newPaths(), "-|" + name);
  status("Close", name);
  EXPECT_EQ(newPaths(), "-|");
  open(name);  // the same one, which the host writes otherwise by now
  EXPECT_EQ(newPaths(), "-|");
  open("a.dsn");
  status("Close", name);
  EXPECT_EQ(newPaths(), "a.dsn|");

  open(name + ";" + other);
  host_.answer("getDsnPinCount", "-1");
  run("getDsnPinCount", R"(,"ProjectPath":")" + doubleBackslashes(other) + "\"");
  EXPECT_EQ(newPaths(), name + "|");
}

TEST_F(OpenDesignsTest, WhatTheCompanionMissedIsReportedAgain) {
  open("a.dsn;b.dsn");
  const auto reportBoth = [&] {
    status("Open", "a.dsn");
    status("Open", "b.dsn");
    EXPECT_EQ(newPaths(), "-|");
  };
  host_.answer("creatClient", "0");
  run("creatClient");
  reportBoth();
  run("creatClient");  // the same connection
  EXPECT_EQ(newPaths(), "-|");
  companionLink.setClientCreated(false);
  host_.answer("creatClient", "1");
  run("creatClient");
  EXPECT_EQ(newPaths(), "-|");
  host_.answer("creatClient", "0");
  run("creatClient");
  EXPECT_EQ(newPaths(), "a.dsn|");
  reportBoth();

  host_.during = [this](const std::string& script) {
    if (script.starts_with("creatClient")) {
      companionLink.noteBreak();  // the connection lives no longer than it takes to answer
    }
  };
  run("creatClient");
  EXPECT_FALSE(companionLink.clientCreated());
  host_.during = nullptr;
  run("creatClient");
  EXPECT_TRUE(companionLink.clientCreated());
  reportBoth();

  open("a.dsn;c.dsn");
  host_.answer("sendPacketGlobalHandle", "broken", false);
  status("Open", "c.dsn");
  status("Close", "b.dsn");
  EXPECT_EQ(newPaths(), "c.dsn|b.dsn");

  host_.answer("getDsnPinCount", "-1");
  const auto countPins = [&] {
    companionLink.setAwaitedCount("c.dsn");
    run("getDsnPinCount", R"(,"ProjectPath":"c.dsn")");
  };
  countPins();
  EXPECT_EQ(newPaths(), "c.dsn|b.dsn");  // the link thread asks without having had the answer
  countPins();
  companionLink.setAwaitedCount("");
  EXPECT_EQ(newPaths(), "-|b.dsn");
}

TEST_F(OpenDesignsTest, OtherStatusesTellNothing) {
  open("a.dsn");
  for (const char* const data :
       {R"({"Status":"Save","FileName":"a.dsn"})", R"({"Status":"Open"})", R"({"FileName":"a.dsn"})",
        R"({"Status":1,"FileName":"a.dsn"})", R"({"Status":"open","FileName":"a.dsn"})", "[]"}) {
    const Json reply = run("FileStatus", std::string(R"(,"Data":)") + data);
    EXPECT_EQ(reply.printUnformatted(),
              R"({"Data":{"ProjectPath":"a.dsn"},"Command":"FileStatus_EndResult","Result":"0"})");
    EXPECT_EQ(newPaths(), "a.dsn|") << data;
  }
}

TEST_F(OpenDesignsTest, StatusIsPassedOnWhateverTheScanGives) {
  run("FileStatus", R"(,"Result":"9","Data":{"x":[1],"FileName":"a","Status":"Open"})");
  EXPECT_THAT(
      host_.scripts,
      ElementsAre(
          sendingScript(R"({"Command":"FileStatus","Result":"0","Data":{"x":[1],"FileName":"a","Status":"Open"}})"),
          "InitPath"));
}

TEST_F(OpenDesignsTest, ScanIsLoggedInItsFourStages) {
  enableTraffic();
  open("a.dsn");
  newPaths();
  EXPECT_EQ(traffic(), "1111\n22222222\n333333333\n1723");
}

TEST_F(OpenDesignsTest, PinCountTakesThePathFromEitherPlace) {
  const struct {
    const char* rest;
    const char* script;
  } rows[] = {
      {R"(,"ProjectPath":"C:\\a.dsn")", R"(getDsnPinCount "C:\\a.dsn")"},
      {R"(,"Data":{"ProjectPath":"C:\\a.dsn"},"ProjectPath":"b")", R"(getDsnPinCount "C:\\a.dsn")"},
      {R"(,"Data":{"ProjectPath":7},"ProjectPath":"b")", R"(getDsnPinCount "b")"},
      {R"(,"ProjectPath":"C:\\\\a\\b.dsn")", R"(getDsnPinCount "C:\\a\b.dsn")"},
      {R"(,"ProjectPath":"[exit]$x\"")", R"(getDsnPinCount "\[exit]\$x\"")"},
  };
  for (const auto& row : rows) {
    host_.scripts.clear();
    run("getDsnPinCount", row.rest);
    EXPECT_THAT(host_.scripts, ElementsAre(row.script));
  }
  host_.scripts.clear();
  EXPECT_EQ(run("getDsnPinCount", R"(,"ProjectPath":7)").member("ErrInfo").text(), "command1 error");
  EXPECT_THAT(host_.scripts, IsEmpty());

  enableTraffic();
  host_.answer("getDsnPinCount", "//server/a");
  run("getDsnPinCount", u8R"(,"ProjectPath":"理")"_gbk);
  EXPECT_EQ(host_.scripts.back(), utf8(u8"getDsnPinCount \"理\""));
  EXPECT_EQ(traffic(), "return://server/a\n//server/a\nOver");
}

TEST_F(OpenDesignsTest, NetsListNamesItsFile) {
  host_.answer("GetNetsList", utf8(u8"网表文件"));
  host_.during = [&](const std::string&) { fake.files.addFile("E:\\p\\Cache\\Nets.txt", "nets"); };
  project.set(pathOf("E:\\p"));
  fake.files.addFolder("E:\\p");
  const Json reply = run("GetNetsList", R"(,"Data":{"ProjectPath":"C:\\a.dsn"})");
  EXPECT_EQ(reply.member("Data").member("netlistsFile").text(), "E:\\p\\Cache\\Nets.txt");
  EXPECT_EQ(reply.member("Data").member("datFile").text(), u8"网表文件"_gbk);
  EXPECT_THAT(fake.files.changes(), ElementsAre("folder E:\\p\\Cache"));
  host_.answer("GetNetsList", "Errors", true);
  EXPECT_EQ(run("GetNetsList", R"(,"Data":{"ProjectPath":"a"})").member("ErrInfo").text(), "Errors");
  host_.answer("GetNetsList", "failed", false);  // an error text is no file name
  EXPECT_EQ(run("GetNetsList", R"(,"Data":{"ProjectPath":"a"})").member("ErrInfo").text(), "failed");
}

}  // namespace
}  // namespace vernoxa::designs
