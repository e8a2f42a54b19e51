#include "link/link_thread.h"

#include <deque>

#include "link/file_status.h"
#include "support/session_test.h"
#include "support/table.h"

namespace vernoxa::link {
namespace {

using testing::ElementsAre;

constexpr const char* yes = R"({"Result":"0"})";
constexpr const char* no = R"({"Result":"1"})";
constexpr const char* hangUp = "none";
const auto toHost = testing::Field(&FakeSockets::Connection::port, hostPort);
const auto toCompanion = testing::Field(&FakeSockets::Connection::port, companionPort);

class LinkThreadTest : public SessionTest {
 protected:
  LinkThreadTest() { hostExecutable.set(pathOf("D:\\Capture.exe")); }

  // What the host's scripts answer to each command, in turn, the last one for ever.
  std::map<std::string, std::deque<std::string>> answers_;

  Peer host() {
    return {{}, StreamEnd::close, [this](const std::string& request) -> std::optional<std::string> {
              requests_.push_back(request);
              const Json message = Json::parse(request).document;
              auto& queue = answers_[std::string(message.member("Command").text().value_or("?"))];
              const std::string answer = queue.empty() ? hangUp : queue.front();
              if (queue.size() > 1) {
                queue.pop_front();
              }
              if (answer == yes && request.find("creatClient") != std::string::npos) {
                companionLink.setClientCreated(true);
              }
              return answer == hangUp ? std::nullopt : std::optional(answer);
            }};
  }

  // Runs the whole thread until it has slept that often; gives the pauses.
  std::vector<int> runFor(int sleeps) {
    fake.sockets.listen(hostPort, host());
    fake.clock.stopAfter = sleeps;
    linkThread(client_).run();
    return fake.clock.pauses();
  }

  // One step over a fresh connection.
  int step(int (LinkThread::*what)(), Peer peer) {
    fake.sockets.expect(hostPort, std::move(peer));
    client_.connect(localAddress, hostPort);
    LinkThread thread = linkThread(client_);
    return (thread.*what)();
  }
  int poll() { return step(&LinkThread::connectToServerForPthread, host()); }

  // The commands of the requests so far.
  std::vector<std::string> asked() const {
    std::vector<std::string> names;
    for (const std::string& request : requests_) {
      const Json message = Json::parse(request).document;
      names.emplace_back(message.member("Command").text().value_or("?"));
      if (const auto status = message.member("Data").member("Status").text()) {
        names.back().append(" ").append(*status);
      }
    }
    return names;
  }

  std::vector<std::string> requests_;
  SocketClient client_ = newClient();
};

TEST_F(LinkThreadTest, WaitsForTheHostThenForTheCompanion) {
  fake.sockets.refuse(hostPort, 2);
  fake.sockets.refuse(companionPort, 50);
  fake.sockets.listen(companionPort, {});
  answers_ = {{"creatClient", {no, yes}}, {"GetNewOpenPath", {no}}};
  // Three attempts at the host, each with its pause; fifty probes without one; a failed handshake; two polls.
  EXPECT_EQ(runFor(6), std::vector(6, 10000));
  EXPECT_THAT(asked(), ElementsAre("creatClient", "creatClient", "GetNewOpenPath", "GetNewOpenPath"));
  EXPECT_THAT(fake.sockets.connections(), ElementsAre(toHost, toCompanion, toCompanion));
  EXPECT_EQ(fake.sockets.refused(), 52);
  EXPECT_EQ(fake.sockets.stillOpen(), 1);
  EXPECT_EQ(crashes(), "Fun111");
}

TEST_F(LinkThreadTest, MakesTheCompanionsConnectionAnew) {
  answers_ = {{"creatClient", {R"({"Result":"0","but":"no flag"})", no, yes}}, {"GetNewOpenPath", {no}}};
  fake.sockets.listen(companionPort, {});
  // The handshake leaves the flag unset, as after a break: one pass fails, the next pauses once more and polls.
  EXPECT_EQ(runFor(5), std::vector(5, 10000));
  EXPECT_THAT(asked(), ElementsAre("creatClient", "creatClient", "creatClient", "GetNewOpenPath", "GetNewOpenPath"));
  EXPECT_THAT(fake.sockets.connections(), ElementsAre(toHost, toCompanion, toCompanion, toCompanion));
}

TEST_F(LinkThreadTest, AsksNothingWhileTheCompanionIsAway) {
  answers_ = {{"creatClient", {R"({"Result":"0","but":"no flag"})"}}};
  fake.sockets.expect(companionPort, {});
  EXPECT_EQ(runFor(4), std::vector(4, 10000));
  EXPECT_THAT(asked(), ElementsAre("creatClient"));
  EXPECT_EQ(fake.sockets.refused(), 3);
}

// Where the system tries again on its own before it tells of a refusal, only a link shows that somebody listens.
TEST_F(LinkThreadTest, NoticesHowLongARefusalTakes) {
  LinkThread thread = linkThread(client_);
  EXPECT_FALSE(companionLink.companionMayBeAsked());
  for (const int milliseconds : {0, 2000, 249, 250}) {
    fake.sockets.refusalTakes = std::chrono::milliseconds(milliseconds);
    EXPECT_EQ(thread.testConnect(), -1);
    EXPECT_EQ(companionLink.companionMayBeAsked(), milliseconds < 250) << milliseconds;
  }
  fake.sockets.refusalTakes = std::chrono::milliseconds(0);
  EXPECT_EQ(thread.testConnect(), -1);
  fake.sockets.faults.failCall(1);  // no socket
  EXPECT_EQ(thread.testConnect(), -1);
  EXPECT_FALSE(companionLink.companionMayBeAsked());
  companionLink.setClientCreated(true);
  EXPECT_TRUE(companionLink.companionMayBeAsked());
  EXPECT_TRUE(fake.clock.pauses().empty());
  fake.sockets.faults.failCall(1, Faults::Kind::throwBadAlloc);
  EXPECT_EQ(thread.testConnect(), -1);
  EXPECT_EQ(crashes(), "testConnect");
}

// Answers to the handshake, whether it succeeds, and what is printed with $ for line ends.
constexpr const char* handshakes = R"(
{"Result":"0"}  | 0  |
{"Result":"1"}  | -1 |
{"Result":"00"} | -1 |
{"Result":0}    | -1 |
{"result":"0"}  | -1 | not value$
[]              | -1 | not value$
nonsense        | -1 | Error before: [nonsense]$
                | -1 | Error before: []$
none            | -1 |
)";

TEST_F(LinkThreadTest, HandshakeNeedsTheStringZero) {
  enableTraffic();
  std::string printed;
  for (const auto& row : rowsOf(handshakes)) {
    answers_["creatClient"] = {row[0]};
    EXPECT_EQ(step(&LinkThread::creatClient, host()), std::stoi(row[1])) << row[0];
    EXPECT_THAT(traffic(), testing::EndsWith(row[0] == hangUp ? "\nret:-1" : "\nret:0")) << row[0];
    EXPECT_EQ(fake.output.text(), printed += replaceAll(row[2], "$", "\n")) << row[0];
  }
  EXPECT_EQ(requests_.front(), "{\n\t\"Command\":\t\"creatClient\"\n}");
  EXPECT_EQ(crashes(), "");
}

TEST_F(LinkThreadTest, ReportsAnOpenedDesign) {
  answers_ = {{"GetNewOpenPath", {u8R"({"Result":"0","Data":{"ProjectPath":"D:\\理.dsn","CloseFile":""}})"_gbk}},
              {"getDsnPinCount", {R"({"Result":"0","Data":{"PinCount":"12"}})"}},
              {"FileStatus", {R"({"Data":{"Path":"E:\\project"}})"}}};
  EXPECT_EQ(poll(), 0);
  EXPECT_THAT(
      requests_,
      ElementsAre("{\n\t\"Command\":\t\"GetNewOpenPath\"\n}",
                  u8"{\n\t\"Command\":\t\"getDsnPinCount\",\n\t\"ProjectPath\":\t\"D:\\\\理.dsn\"\n}"_gbk,
                  "{\n\t\"Command\":\t\"FileStatus\",\n\t\"Result\":\t\"0\",\n\t\"Data\":\t{\n"
                  u8"\t\t\"Status\":\t\"Open\",\n\t\t\"FileName\":\t\"D:\\\\理.dsn\",\n\t\t\"Pid\":\t\"4242\",\n"_gbk
                  "\t\t\"AllegroPath\":\t\"D:\\\\Capture.exe\",\n\t\t\"PinCount\":\t\"12\"\n\t}\n}"));
  EXPECT_EQ(project.get().utf8(), "E:\\project");
}

TEST_F(LinkThreadTest, ReportsClosedDesignsWithAPauseEach) {
  answers_ = {{"GetNewOpenPath",
               {"{\"Result\":\"0\",\"Data\":{\"CloseFile\":\"D:\\\\a.dsn;;D:\\\\" + utf8(u8"原理图") + ".DSN;\"}}"}},
              {"FileStatus", {yes}}};
  EXPECT_EQ(poll(), 0);
  EXPECT_THAT(asked(), ElementsAre("GetNewOpenPath", "FileStatus Close", "FileStatus Close"));
  EXPECT_EQ(requests_[2],
            "{\n\t\"Command\":\t\"FileStatus\",\n\t\"Result\":\t\"0\",\n\t\"Data\":\t{\n\t\t\"Status\":\t\"Close\",\n"
            u8"\t\t\"FileName\":\t\"D:\\\\原理图.DSN\"\n\t}\n}"_gbk);
  EXPECT_THAT(fake.clock.pauses(), ElementsAre(300, 300));
}

// What is polled: the host's answers to GetNewOpenPath, getDsnPinCount and FileStatus ("none" hangs up), how the poll
// ends, what was asked, and what was printed with $ for line ends. O stands before the good answers to the first.
constexpr const char* polls = R"(
no answer                | none                              |   |    | -1  |  |
no JSON                  | {                                 |   |    | -3  |  | Error before: []$
failed                   | {"Result":"1","Data":{}}          |   |    | -4  |  | not value$
no result                | {"Data":{"ProjectPath":"a.dsn"}}  |   |    | -4  |  | not value$
result as number         | {"Result":0,"Data":{"ProjectPath":"a.dsn"}} | | | -4 |  | not value$
no data                  | {"Result":"0"}                    |   |    | -4  |  | not value$
data of another kind     | {"Result":"0","Data":"a.dsn"}     |   |    | -4  |  | not value$
nothing new              | O"CloseFile":""                   |   |    | -5  |  |
nothing new at all       | O                                 |   |    | -5  |  |
a closed name of one character | O"CloseFile":"a"            |   |    | 0 |  |
a closed name of two     | O"CloseFile":"ab"                 |   | {"Result":"0"} | 0 | FileStatus Close |
no designs               | O"ProjectPath":"a.Dsn;b.opj;dsn;;c.dsn.bak;" | | | 0 |  |
path of another kind     | O"ProjectPath":["a.dsn"]          |   |    | 0 |  |
the host lost it         | O"ProjectPath":"a.dsn;b.DSN;"     | {"Data":{"PinCount":"-1"}} | | 0 | getDsnPinCount,getDsnPinCount | Don't have fileDon't have file
pin count missing        | O"ProjectPath":"a.dsn","CloseFile":"b.dsn" | {"PinCount":"3"} | {"Result":"0"} | 0 | getDsnPinCount,FileStatus Close | not value$
pin count of another kind | O"ProjectPath":"a.dsn"           | {"Data":{"PinCount":3}} | {"Result":"0"} | 0 | getDsnPinCount | not value$
pin count is no JSON     | O"ProjectPath":"a.dsn;b.dsn"      | ? | {"Result":"0"} | 0 | getDsnPinCount,getDsnPinCount | Error before: [?]$Error before: [?]$
lost before the count    | O"ProjectPath":"a.dsn;b.dsn","CloseFile":"c.dsn" | none | {"Result":"0"} | -1 | getDsnPinCount |
lost after telling       | O"ProjectPath":"a.dsn;b.dsn","CloseFile":"c.dsn" | {"Data":{"PinCount":"3"}} | none | -1 | getDsnPinCount,FileStatus Open |
lost while closing       | O"CloseFile":"c.dsn;d.dsn"        |   | none | -1 | FileStatus Close |
path reported is empty   | O"ProjectPath":"a.dsn" | {"Data":{"PinCount":"3"}} | {"Data":{"Path":""}} | 0 | getDsnPinCount,FileStatus Open |
path reported of another kind | O"ProjectPath":"a.dsn" | {"Data":{"PinCount":"3"}} | {"Data":{"Path":7}} | 0 | getDsnPinCount,FileStatus Open |
)";

TEST_F(LinkThreadTest, PollsOfEveryKind) {
  std::string printed;
  for (const auto& row : rowsOf(polls)) {
    const std::string found = row[1][0] == 'O' ? R"({"Result":"0","Data":{)" + row[1].substr(1) + "}}" : row[1];
    requests_.clear();
    answers_ = {{"GetNewOpenPath", {found}}, {"getDsnPinCount", {row[2]}}, {"FileStatus", {row[3]}}};
    EXPECT_EQ(poll(), std::stoi(row[4])) << row[0];
    std::vector<std::string> expected = splitItems(row[5], ',');
    expected.insert(expected.begin(), "GetNewOpenPath");
    EXPECT_EQ(asked(), expected) << row[0];
    EXPECT_EQ(fake.output.text(), printed += replaceAll(row[6], "$", "\n")) << row[0];
    EXPECT_EQ(project.get().utf8(), "C:\\App") << row[0];
    EXPECT_EQ(companionLink.takeAwaitedCount(), row[2] == hangUp ? "a.dsn" : "") << row[0];
  }
  EXPECT_EQ(crashes(), "");
}

TEST_F(LinkThreadTest, ReplyThatIsNoPacketTextIsReportedByTheStepItMet) {
  const Peer garbage{{{std::string("\x04\0\0\0zzzz", 8), {}}}, StreamEnd::close, nullptr};
  EXPECT_EQ(step(&LinkThread::creatClient, garbage), -1);
  EXPECT_EQ(step(&LinkThread::connectToServerForPthread, garbage), -1);
  EXPECT_EQ(crashes(), "creatClient\nconnectToServerForPthread");
}

TEST_F(LinkThreadTest, TheProjectIsWhatTheCompanionNamesInEitherEncoding) {
  fake.files.addFolder(u8"C:\\鏀惧ぇ"_gbk);  // in the code page the bytes of this name are UTF-8 of another one
  const std::pair<std::string, std::u8string_view> rows[] = {
      {u8"D:\\工程"_gbk, u8"D:\\工程"},     {utf8(u8"D:\\工程"), u8"D:\\工程"}, {utf8(u8"D:\\鏀惧ぇ"), u8"D:\\鏀惧ぇ"},
      {u8"C:\\鏀惧ぇ"_gbk, u8"C:\\鏀惧ぇ"}, {"D:\\\xC3\xA9", u8"D:\\茅"},       {"D:\\plain", u8"D:\\plain"},
  };
  for (const auto& [told, kept] : rows) {
    part<const FileStatus>().followProject(told);
    EXPECT_EQ(project.get().utf8(), utf8(kept));
  }
}

}  // namespace
}  // namespace vernoxa::link
