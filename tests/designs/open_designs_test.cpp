// What the link thread hears of open designs over a session.
#include <algorithm>

#include "support/session_test.h"
#include "support/table.h"

namespace vernoxa::designs {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OpenDesignsTest : public SessionTest {
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
    return std::string(data.member("ProjectPath").text().value_or("-")) + "|" +
           std::string(data.member("CloseFile").text().value_or("-"));
  }
  // Steps, a row each, and behind some what is new then: "host" has these designs open, "connect" with that answer,
  // "pins" of a design are counted, or a status of a design. HOST and NAME stand for one design's path and its name.
  void play(const std::string& steps, const std::string& path = "", const std::string& name = "") {
    for (const auto& row : rowsOf(replaceAll(replaceAll(steps, "HOST", path), "NAME", name))) {
      const std::string verb = row[0].substr(0, row[0].find(' '));
      const std::string rest = row[0].substr(std::min(verb.size() + 1, row[0].size()));
      if (verb == "host") {
        host_.answer("InitPath", rest);
      } else if (verb == "connect") {
        host_.answer("creatClient", rest);
        run("creatClient");
      } else if (verb == "pins") {
        run("getDsnPinCount", R"(,"ProjectPath":")" + doubleBackslashes(rest) + "\"");
      } else if (!verb.empty()) {
        run("FileStatus", R"(,"Data":{"Status":")" + verb + R"(","FileName":")" + doubleBackslashes(rest) + "\"}");
      }
      if (row.size() > 1) {
        EXPECT_EQ(newPaths(), row[1]) << row[0];
      }
    }
  }
};

TEST_F(OpenDesignsTest, ALostReplyLosesNothing) {
  play(R"(
      host a.dsn;b.DSN;  | a.dsn|
                         | a.dsn|
      Open a.dsn         | b.DSN|
      Open b.DSN         | -|
      host c.dsn         | c.dsn|a.dsn;b.DSN
                         | c.dsn|a.dsn;b.DSN
      Close a.dsn        | c.dsn|b.DSN
      Close b.DSN
      Close b.DSN
      host c.dsn;a.dsn
      Open c.dsn         | a.dsn|
      host a.opj;;b.Dsn  | No file!
      host b.dsn         | b.dsn|c.dsn)");
}

TEST_F(OpenDesignsTest, UnknownPinCountCountsAsTold) {
  host_.answer("getDsnPinCount \"a.dsn\"", "-1");
  host_.answer("getDsnPinCount \"b.dsn\"", "12");
  play(R"(
      host a.dsn;b.dsn | a.dsn|
      pins b.dsn       | a.dsn|
      pins a.dsn       | b.dsn|)");
}

// The host gives UTF-8, messages bring the code page: one design all the same, and the host gets its own bytes back.
// The code page bytes of the last two names are valid UTF-8 of other names.
TEST_F(OpenDesignsTest, OneDesignInBothEncodings) {
  for (const char8_t* const name : {u8"D:\\原理图.dsn", u8"C:\\鏀惧ぇ.dsn", u8"D:\\娴嬭瘯\\a.dsn"}) {
    play(R"(
        host HOST;b.dsn | HOST|
        Open NAME       | b.dsn|
        Open b.dsn      | -|
        host b.dsn      | -|HOST
        Close NAME      | -|
        Open NAME       | -|HOST
        Close NAME
        Close b.dsn)",  // it was told again when it was no longer open
         utf8(name), literalOf(FilePath::fromUtf8(utf8(name))));
  }
}

TEST_F(OpenDesignsTest, DesignsOfOneNameAreToldApartByTheHostsBytes) {
  host_.answer("getDsnPinCount", "-1");
  play(R"(
      host NAME;HOST | NAME|
      Open NAME      | HOST|
      Open NAME      | -|
      host HOST      | -|NAME
      Close NAME     | -|
      host NAME      | -|
      host a.dsn
      Close NAME     | a.dsn|
      host NAME;HOST
      pins HOST      | NAME|
      host b.dsn     | b.dsn|HOST
      pins NAME      | b.dsn|HOST)",
       utf8(u8"D:\\原理图.dsn"), u8"D:\\原理图.dsn"_gbk);
}

TEST_F(OpenDesignsTest, WhatTheCompanionMissedIsReportedAgain) {
  play(R"(
      host a.dsn;b.dsn
      connect 0
      Open a.dsn
      Open b.dsn | -|
      connect 0  | -|)");  // the same connection
  companionLink.setClientCreated(false);
  play(R"(
      connect 1  | -|
      connect 0  | a.dsn|
      Open a.dsn
      Open b.dsn | -|)");

  host_.during = [this](const std::string& script) {
    if (script.starts_with("creatClient")) {
      companionLink.noteBreak();  // the connection lives no longer than it takes to answer
    }
  };
  play("connect 0");
  EXPECT_FALSE(companionLink.clientCreated());
  host_.during = nullptr;
  play(R"(
      connect 0
      Open a.dsn
      Open b.dsn | -|)");
  EXPECT_TRUE(companionLink.clientCreated());

  host_.answer("sendPacketGlobalHandle", "broken", false);
  play(R"(
      host a.dsn;c.dsn
      Open c.dsn
      Close b.dsn | c.dsn|b.dsn)");
  host_.answer("getDsnPinCount", "-1");
  companionLink.setAwaitedCount("c.dsn");
  play("pins c.dsn | c.dsn|b.dsn");  // the link thread asks without having had the answer
  companionLink.setAwaitedCount("c.dsn");
  play("pins c.dsn");
  companionLink.setAwaitedCount("");
  play(" | -|b.dsn");
}

TEST_F(OpenDesignsTest, OtherStatusesTellNothing) {
  host_.answer("InitPath", "a.dsn");
  for (const char* const data :
       {R"({"Status":"Save","FileName":"a.dsn"})", R"({"Status":"Open"})", R"({"FileName":"a.dsn"})",
        R"({"Status":1,"FileName":"a.dsn"})", R"({"Status":"open","FileName":"a.dsn"})"}) {
    run("FileStatus", std::string(R"(,"Data":)") + data);
    EXPECT_EQ(newPaths(), "a.dsn|") << data;
  }
  // The companion hears of the first and the last one all the same.
  EXPECT_EQ(std::count_if(host_.scripts.begin(), host_.scripts.end(),
                          [](const std::string& script) { return script.starts_with("sendPacketGlobalHandle"); }),
            2);
}

TEST_F(OpenDesignsTest, AScanIsLoggedInItsFourStages) {
  enableTraffic();
  newPaths();
  EXPECT_EQ(traffic(), "1111\n22222222\n333333333\n1723");
}

TEST_F(OpenDesignsTest, PinCountTakesThePathFromEitherPlace) {
  const std::pair<const char*, const char*> rows[] = {
      {R"(,"ProjectPath":"C:\\a.dsn")", R"(getDsnPinCount "C:\\a.dsn")"},
      {R"(,"Data":{"ProjectPath":"C:\\a.dsn"},"ProjectPath":"b")", R"(getDsnPinCount "C:\\a.dsn")"},
      {R"(,"Data":{"ProjectPath":7},"ProjectPath":"b")", R"(getDsnPinCount "b")"},
      {R"(,"ProjectPath":"C:\\\\a\\b.dsn")", R"(getDsnPinCount "C:\\a\b.dsn")"},
  };
  EXPECT_EQ(run("getDsnPinCount", R"(,"ProjectPath":7)").member("ErrInfo").text(), "command1 error");
  EXPECT_THAT(host_.scripts, IsEmpty());
  for (const auto& [rest, script] : rows) {
    run("getDsnPinCount", rest);
    EXPECT_EQ(host_.scripts.back(), script);
  }
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
  host_.answer("GetNetsList", "failed", false);  // an error text is no file name
  EXPECT_EQ(run("GetNetsList", R"(,"Data":{"ProjectPath":"a"})").member("ErrInfo").text(), "failed");
}

}  // namespace
}  // namespace vernoxa::designs
