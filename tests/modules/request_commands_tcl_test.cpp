#include "modules/request_commands.h"

#include "link/socket_client.h"
#include "modules/library_files.h"
#include "support/command_test_tcl.h"

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

  std::string userId() { return call(plugin::run<getSelfUserId>).text; }
  std::string path(const std::string& id) { return call(plugin::run<getResPath>, {id}).text; }
  void companionAnswers(const std::string& reply, std::chrono::seconds after = 0s) {
    fake.sockets.expect(link::companionPort, {{{frameOf(reply), after}}, StreamEnd::hang, {}});
  }
  std::string lastRequest() { return messagesIn(fake.sockets.connections().back().sent).at(0); }
};

TEST_F(RequestCommands, RepliesOfTheCompanionBecomeAnswers) {
  fake.files.addFile(u8"D:\\模块\\a.json"_gbk, "{}");
  // The reply, what getResPath and getSelfUserId answer, and the last line that the former logs.
  const std::array<const char*, 4> cases[] = {
      {u8R"({"Result":0,"Data":{"ResId":"7","UserId":"u1","DatPath":"D:\\模块\\a.json"}})"_gbk,
       u8"D:\\\\模块\\\\a.json"_gbk, "u1", "ret:0"},
      {R"({"Result":"0","Data":{"ResId":7,"UserId":12,"DatPath":"D:\\gone.json"}})", "", "12", "ret:0"},
      {R"({"Result":3,"Data":{"ResId":"7","UserId":"u"}})", "3", "3", "ret:0"},
      {R"({"Result":0,"Data":{"ResId":"7"}})", R"({"Result":0,"Data":{"ResId":"7"}})", "", "DatPath"},
      {R"({"Data":{"ResId":"7","UserId":"u"}})", "", "", "Result"},
      {R"({"Result":0,"Data":[]})", "", "", "Data"},
      {R"({"Result":1,"Data":{}})", "", "", "ResId"},
      {R"({"Result":0,"Data":{"ResId":null,"UserId":{}}})", "", "", "ResId"},
      {"no json", "", "", "Result"},
  };
  for (const auto& [reply, answered, user, logged] : cases) {
    companionAnswers(reply);
    EXPECT_EQ(path("7"), answered) << reply;
    EXPECT_THAT(traffic(), EndsWith(std::string("\n") + logged));
    EXPECT_EQ(lastRequest(), R"({"Command":"GetMarketResPath","Data":{"ResId":"7"},"Result":"0"})");
    part<ResourcePaths>().known.clear();
    placement.PartIndex.clear();
    companionAnswers(reply);
    EXPECT_EQ(userId(), user) << reply;
    EXPECT_EQ(lastRequest(), R"({"Command":"GetSelfId","Data":{},"Result":"0"})");
  }
  companionAnswers("{}");
  path(R"(7","x":"\)");
  EXPECT_EQ(lastRequest(), R"({"Command":"GetMarketResPath","Data":{"ResId":"7\",\"x\":\"\\"},"Result":"0"})");
  EXPECT_EQ(fake.sockets.stillOpen(), 0);
  EXPECT_EQ(fake.sockets.started(), 1);
}

TEST_F(RequestCommands, KnownAnswersAreNotAskedAgain) {
  for (const std::string id : {"1", "2"}) {
    fake.files.addFile("D:\\" + id + ".json", "{}");
    companionAnswers(R"({"Result":0,"Data":{"ResId":"1","DatPath":"D:\\)" + id + ".json\"}}");
  }
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(path("1"), "D:\\\\1.json");
    EXPECT_EQ(path("2"), "D:\\\\2.json");
  }
  EXPECT_EQ(fake.sockets.connections().size(), 2U);
  fake.files.removeFile("D:\\1.json");
  EXPECT_EQ(path("1"), "");  // asked, and nobody there
  EXPECT_EQ(fake.sockets.refused(), 1);
  EXPECT_THAT(traffic(), EndsWith("can't Init"));

  placement.PartIndex = "2";  // of a placement: the two share their field
  EXPECT_EQ(userId(), "2");
  EXPECT_EQ(fake.sockets.refused(), 1);
}

TEST_F(RequestCommands, NobodyIsAskedWhoMayNotBeThere) {
  companionLink.setClientCreated(false);
  fake.sockets.refusalTakes = 2s;
  const auto start = fake.clock.monotonic();
  EXPECT_EQ(userId() + path("1"), "");
  EXPECT_EQ(traffic(), "can't Init\ncan't Init");
  EXPECT_EQ(fake.sockets.refused(), 0);
  EXPECT_EQ(fake.clock.monotonic(), start);
  companionLink.setRefusedAtOnce(true);  // then an attempt costs nothing
  companionAnswers(R"({"Result":0,"Data":{"UserId":"u"}})");
  EXPECT_EQ(userId(), "u");
}

TEST_F(RequestCommands, SilentCompanionHoldsTheHostForThirtySeconds) {
  const std::string reply = R"({"Result":0,"Data":{"UserId":"u"}})";
  fake.sockets.expect(link::companionPort, {{}, StreamEnd::hang, {}});
  companionAnswers(reply, 31s);
  for (int attempt = 0; attempt < 2; ++attempt) {
    const auto start = fake.clock.monotonic();
    EXPECT_EQ(userId(), "");
    EXPECT_LE(fake.clock.monotonic() - start, 30s);
    EXPECT_THAT(traffic(), EndsWith("ret:-1"));
  }
  companionAnswers(reply, 29s);
  EXPECT_EQ(userId(), "u");
}

TEST_F(RequestCommands, ReplyThatIsNoPacketTextEndsAsException) {
  fake.sockets.expect(link::companionPort, {{{std::string("\x02\0\0\0zz", 6)}}, StreamEnd::hang, {}});
  EXPECT_THROW(path("1"), std::runtime_error);
  EXPECT_EQ(fake.sockets.stillOpen(), 0);
}

TEST_F(RequestCommands, UploadNamesTheModuleOnce) {
  host_.answer("sendPacketGlobalHandle", "0");
  part<PreviewPicture>().path = u8"C:\\预览.bmp"_gbk;
  placement.dsnDatPath = "C:\\ModuleLib.json";
  const std::string resistor = utf8(u8"贴片电阻");
  EXPECT_EQ(call(plugin::run<sendUploadMarket>,
                 {"10", "4", "1.5", "1,R1,0603,more;2,C1;bad;;3,,;" + resistor + ",R", "N1;;" + resistor, "k1;k2;"})
                .text,
            "0");
  EXPECT_EQ(
      host_.scripts.at(0),
      sendingScript(
          Json::parse(
              u8R"({"Data":{"dsnBmpPath":"C:\\预览.bmp","dsnDatPath":"C:\\ModuleLib.json",)"_gbk
              R"("Part":[{"Id":"1","Ref":"R1","Package":"0603"},{"Id":"2","Ref":"C1"},{"Id":"3","Ref":"","Package":""},)"
              u8R"({"Id":"贴片电阻","Ref":"R"}],"Wire":["N1","贴片电阻"],"Keys":["k1","k2"],)"_gbk
              R"("sumPins":"10","selfPins":"4","copyPrice":"1.5"},"Command":"SelectModule_EndResult","Result":"0"})")
              .document.printFormatted()));
  EXPECT_EQ(part<PreviewPicture>().path + placement.dsnDatPath, "");

  call(plugin::run<sendUploadMarket>);
  EXPECT_THAT(messageOf(host_.scripts.at(1).substr(24)).message, HasSubstr("\"Keys\":\t[],\n"));
}

TEST_F(RequestCommands, CleanUpRemovesThePlacementsFilesOnly) {
  placement.dsnDatPath = "C:\\MaZe\\m.json";
  fake.random.numbers = {5, 6};
  part<LibraryFiles>().pickNames();
  for (const char* name : {"5.olb", "5_0.OBK", "6.olb", "m.json", "7.olb"}) {
    fake.files.addFile(std::string("C:\\MaZe\\") + name, "");
  }
  call(plugin::run<removeDatFile>);  // none of the libraries was made here
  EXPECT_EQ(namesIn("C:\\MaZe").size(), 4U);
  for (const char* made : {"c:/maze/5.OLB", "C:\\MAZE\\5_0.obk", "C:\\MaZe/6.olb"}) {
    part<LibraryFiles>().noteHostMakes(pathOf(made));
  }
  call(plugin::run<removeDatFile>);
  EXPECT_EQ(namesIn("C:\\MaZe"), std::vector<std::string>{"7.olb"});
  fake.files.addFile("C:\\MaZe\\6.olb", "");  // somebody else's by now
  call(plugin::run<removeDatFile>);
  EXPECT_EQ(namesIn("C:\\MaZe").size(), 2U);
}

}  // namespace
}  // namespace vernoxa::modules
