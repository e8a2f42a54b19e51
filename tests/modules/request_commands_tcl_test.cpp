#include "modules/request_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "link/socket_client.h"
#include "modules/library_files.h"
#include "support/command_test_tcl.h"
#include "text/gbk_literal.h"
#include "text/json.h"

namespace vernoxa::modules {
namespace {

using namespace std::chrono_literals;
using testing::EndsWith;
using testing::HasSubstr;

class RequestCommands : public CommandTest {
 protected:
  RequestCommands() {
    enableTraffic();
    companionLink.setClientCreated(true);
  }

  std::string invoke(Command command, const Words& arguments) { return call(command, arguments).text; }
  void companionAnswers(const std::string& reply) {
    fake.sockets.expect(link::companionPort, {{{frameOf(reply)}}, StreamEnd::hang, {}});
  }
  std::string lastRequest() { return messagesIn(fake.sockets.connections().back().sent).at(0); }
};

TEST_F(RequestCommands, RepliesOfTheCompanionBecomeAnswers) {
  fake.files.addFile(u8"D:\\模块\\a.json"_gbk, "{}");
  const struct {
    const char* reply;
    const char* path;    // GetResPath
    const char* user;    // getSelfUserId
    const char* logged;  // last line, of GetResPath
  } cases[] = {
      {u8R"({"Result":0,"Data":{"ResId":"7","UserId":"u1","DatPath":"D:\\模块\\a.json"}})"_gbk,
       u8"D:\\\\模块\\\\a.json"_gbk, "u1", "ret:0"},
      {R"({"Result":"0","Data":{"ResId":7,"UserId":12,"DatPath":"D:\\gone.json"}})", "", "12", "ret:0"},
      {R"({"Result":3,"Data":{"ResId":"7","UserId":"u"}})", "3", "3", "ret:0"},
      {R"({"Result":0,"Data":{"ResId":"7"}})", R"({"Result":0,"Data":{"ResId":"7"}})", "", "DatPath"},
      {R"({"Data":{"ResId":"7","UserId":"u"}})", "", "", "Result"},
      {R"({"Result":0})", "", "", "Data"},
      {R"({"Result":0,"Data":[]})", "", "", "Data"},
      {R"({"Result":1,"Data":{}})", "", "", "ResId"},
      {R"({"Result":0,"Data":{"ResId":null,"UserId":{}}})", "", "", "ResId"},
      {"no json", "", "", "Result"},
  };
  for (const auto& each : cases) {
    companionAnswers(each.reply);
    EXPECT_EQ(invoke(plugin::run<getResPath>, {"7"}), each.path) << each.reply;
    EXPECT_THAT(traffic(), EndsWith(std::string("\n") + each.logged));
    EXPECT_EQ(lastRequest(), R"({"Command":"GetMarketResPath","Data":{"ResId":"7"},"Result":"0"})");
    part<ResourcePaths>().known.clear();
    placement.PartIndex.clear();
    companionAnswers(each.reply);
    EXPECT_EQ(invoke(plugin::run<getSelfUserId>, {}), each.user) << each.reply;
    EXPECT_EQ(lastRequest(), R"({"Command":"GetSelfId","Data":{},"Result":"0"})");
  }
  companionAnswers("{}");
  invoke(plugin::run<getResPath>, {R"(7","x":"\)"});
  EXPECT_EQ(lastRequest(), R"({"Command":"GetMarketResPath","Data":{"ResId":"7\",\"x\":\"\\"},"Result":"0"})");
  EXPECT_EQ(fake.sockets.stillOpen(), 0);
  EXPECT_EQ(fake.sockets.started(), 1);
}

TEST_F(RequestCommands, KnownAnswersAreNotAskedAgain) {
  fake.files.addFile("D:\\1.json", "{}");
  fake.files.addFile("D:\\2.json", "{}");
  companionAnswers(R"({"Result":0,"Data":{"ResId":"1","DatPath":"D:\\1.json"}})");
  companionAnswers(R"({"Result":0,"Data":{"ResId":"2","DatPath":"D:\\2.json"}})");
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(invoke(plugin::run<getResPath>, {"1"}), "D:\\\\1.json");
    EXPECT_EQ(invoke(plugin::run<getResPath>, {"2"}), "D:\\\\2.json");
  }
  EXPECT_EQ(fake.sockets.connections().size(), 2U);
  fake.files.removeFile("D:\\1.json");
  EXPECT_EQ(invoke(plugin::run<getResPath>, {"1"}), "");  // asked, and nobody there
  EXPECT_EQ(fake.sockets.refused(), 1);
  EXPECT_THAT(traffic(), EndsWith("can't Init"));

  placement.PartIndex = "2";  // of a placement: the two share their field
  EXPECT_EQ(invoke(plugin::run<getSelfUserId>, {}), "2");
  EXPECT_EQ(fake.sockets.refused(), 1);
}

TEST_F(RequestCommands, NobodyIsAskedWhoMayNotBeThere) {
  companionLink.setClientCreated(false);
  fake.sockets.refusalTakes = 2s;
  const auto start = fake.clock.monotonic();
  EXPECT_EQ(invoke(plugin::run<getSelfUserId>, {}) + invoke(plugin::run<getResPath>, {"1"}), "");
  EXPECT_EQ(traffic(), "can't Init\ncan't Init");
  EXPECT_EQ(fake.sockets.refused(), 0);
  EXPECT_EQ(fake.clock.monotonic(), start);
  companionLink.setRefusedAtOnce(true);  // then an attempt costs nothing
  companionAnswers(R"({"Result":0,"Data":{"UserId":"u"}})");
  EXPECT_EQ(invoke(plugin::run<getSelfUserId>, {}), "u");
}

TEST_F(RequestCommands, SilentCompanionHoldsTheHostForThirtySeconds) {
  const std::string frame = frameOf(R"({"Result":0,"Data":{"UserId":"u"}})");
  for (const std::vector<Piece>& pieces : {std::vector<Piece>(), std::vector<Piece>{{frame, 31s}}}) {
    fake.sockets.expect(link::companionPort, {pieces, StreamEnd::hang, {}});
    const auto start = fake.clock.monotonic();
    EXPECT_EQ(invoke(plugin::run<getSelfUserId>, {}), "");
    EXPECT_LE(fake.clock.monotonic() - start, 30s);
    EXPECT_THAT(traffic(), EndsWith("ret:-1"));
  }
  fake.sockets.expect(link::companionPort, {{{frame, 29s}}, StreamEnd::hang, {}});
  EXPECT_EQ(invoke(plugin::run<getSelfUserId>, {}), "u");
}

TEST_F(RequestCommands, ReplyThatIsNoPacketTextEndsAsException) {
  fake.sockets.expect(link::companionPort, {{{std::string("\x02\0\0\0zz", 6)}}, StreamEnd::hang, {}});
  EXPECT_THROW(invoke(plugin::run<getResPath>, {"1"}), std::runtime_error);
  EXPECT_EQ(fake.sockets.stillOpen(), 0);
}

TEST_F(RequestCommands, UploadNamesTheModuleOnce) {
  host_.answer("sendPacketGlobalHandle", "0");
  part<PreviewPicture>().path = u8"C:\\预览.bmp"_gbk;
  placement.dsnDatPath = "C:\\ModuleLib.json";
  const std::string resistor = utf8(u8"贴片电阻");
  EXPECT_EQ(invoke(plugin::run<sendUploadMarket>,
                   {"10", "4", "1.5", "1,R1,0603,more;2,C1;bad;;3,,;" + resistor + ",R", "N1;;" + resistor, "k1;k2;"}),
            "0");
  const std::string script = host_.scripts.at(0);
  const std::string expected =
      u8R"({"Data":{"dsnBmpPath":"C:\\预览.bmp","dsnDatPath":"C:\\ModuleLib.json",)"_gbk
      R"("Part":[{"Id":"1","Ref":"R1","Package":"0603"},{"Id":"2","Ref":"C1"},{"Id":"3","Ref":"","Package":""},)"
      u8R"({"Id":"贴片电阻","Ref":"R"}],"Wire":["N1","贴片电阻"],"Keys":["k1","k2"],)"_gbk
      R"("sumPins":"10","selfPins":"4","copyPrice":"1.5"},"Command":"SelectModule_EndResult","Result":"0"})";
  EXPECT_EQ(script, sendingScript(Json::parse(expected).document.printFormatted()));
  EXPECT_EQ(part<PreviewPicture>().path + placement.dsnDatPath, "");

  invoke(plugin::run<sendUploadMarket>, {});
  EXPECT_THAT(messageOf(host_.scripts.at(1).substr(24)).message, HasSubstr("\"Keys\":\t[],\n"));
}

TEST_F(RequestCommands, CleanUpRemovesThePlacementsFilesOnly) {
  placement.dsnDatPath = "C:\\Mods\\m.json";
  fake.random.numbers = {5, 6};
  part<LibraryFiles>().pickNames();
  for (const char* name : {"5.olb", "5_0.OBK", "6.olb", "m.json", "7.olb"}) {
    fake.files.addFile(std::string("C:\\Mods\\") + name, "");
  }
  invoke(plugin::run<removeDatFile>, {});  // none of the libraries was made here
  EXPECT_EQ(fake.files.entries("C:\\Mods").size(), 4U);
  for (const char* path : {"c:/mods/5.OLB", "C:\\MODS\\5_0.obk", "C:\\Mods/6.olb"}) {
    part<LibraryFiles>().noteMade(pathOf(path));
  }
  invoke(plugin::run<removeDatFile>, {});
  EXPECT_EQ(fake.files.entries("C:\\Mods").size(), 1U);
  fake.files.addFile("C:\\Mods\\6.olb", "");  // somebody else's by now
  invoke(plugin::run<removeDatFile>, {});
  EXPECT_EQ(fake.files.entries("C:\\Mods").size(), 2U);
}

}  // namespace
}  // namespace vernoxa::modules
