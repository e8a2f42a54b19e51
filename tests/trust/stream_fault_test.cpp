// A conversation of the link that breaks at every byte, in every way that a stream can break.
#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "text/text.h"
#include "trust/trust_rig_tcl.h"

namespace vernoxa {
namespace {

// What the host's scripts answer in a conversation in which designs are opened and closed.
const std::array<std::string, 8> answers = {
    R"({"Data":{},"Command":"creatClient_EndResult","Result":"0"})",
    R"({"Data":{"ProjectPath":"D:\\a.dsn","CloseFile":""},"Command":"GetNewOpenPath_EndResult","Result":"0"})",
    R"({"Data":{"PinCount":"12"},"Command":"getDsnPinCount_EndResult","Result":"0"})",
    R"({"Data":{"ProjectPath":"D:\\a.dsn","Path":"D:\\project"},"Command":"FileStatus_EndResult","Result":"0"})",
    R"({"Data":{"CloseFile":"D:\\b.dsn;D:\\c.dsn"},"Command":"GetNewOpenPath_EndResult","Result":"0"})",
    R"({"Data":{},"Command":"FileStatus_EndResult","Result":"0"})",
    R"({"Data":{},"Command":"FileStatus_EndResult","Result":"0"})",
    R"({"Data":{},"Command":"GetNewOpenPath_EndResult","Result":"1","ErrInfo":"No file!"})",
};

std::string wholeStream() {
  std::string stream;
  for (const std::string& answer : answers) {
    stream.append(frameOf(answer));
  }
  return stream;
}

constexpr std::size_t never = std::string::npos;

// The stream as a well-behaved peer delivers it: header and payload apart. What stands from `late` to the end of a
// payload is a piece of its own, which comes later; a header comes later as a whole, since one in two pieces is none.
std::vector<Piece> piecesOf(const std::string& stream, std::size_t late = never) {
  std::vector<Piece> pieces;
  for (std::size_t number = 0, at = 0; at < stream.size(); ++number) {
    const std::size_t payload = number / 2 < answers.size() ? 2 * answers[number / 2].size() : stream.size();
    const bool isHeader = number % 2 == 0;
    const std::size_t end = std::min(at + (isHeader ? 4 : payload), stream.size());
    const bool isLate = at <= late && late < end;
    if (isLate && at < late && !isHeader) {
      pieces.push_back({stream.substr(at, late - at), {}});
      at = late;
    }
    pieces.push_back({stream.substr(at, end - at), std::chrono::minutes(isLate ? 10 : 0)});
    at = end;
  }
  return pieces;
}

struct Kind {
  const char* name;
  void (*damage)(std::string& stream, std::size_t at);
  StreamEnd end = StreamEnd::close;
};

constexpr auto cut = [](std::string& stream, std::size_t at) { stream.resize(at); };
constexpr Kind kinds[] = {
    {"late", nullptr},
    {"closed", cut},
    {"reset", cut, StreamEnd::fail},
    {"one bit changed", [](std::string& stream, std::size_t at) { stream[at] = static_cast<char>(stream[at] ^ 0x10); }},
    {"no digit", [](std::string& stream, std::size_t at) { stream[at] = 'z'; }},
    {"NUL", [](std::string& stream, std::size_t at) { stream[at] = '\0'; }},
    {"repeated", [](std::string& stream, std::size_t at) { stream.insert(at, 1, stream[at]); }},
    {"lost", [](std::string& stream, std::size_t at) { stream.erase(at, 1); }},
    {"a browser's request", [](std::string& stream, std::size_t at) { stream.insert(at, "GET / HTTP/1.1\r\n\r\n"); }},
};

class StreamFault : public testing::Test {
 protected:
  struct Run {
    std::string told;    // everything that was sent to the host
    std::string folder;  // the project's folder as the companion named it
    int calls = 0;       // of sockets
  };

  static Run converse(Peer host, int failingCall = 0, Faults::Kind kind = Faults::Kind::fail) {
    FakeSession services;
    Run run;
    services.companionLink.setClientCreated(true);
    services.fake.sockets.expect(link::hostPort, std::move(host));
    services.fake.sockets.listen(link::companionPort, {});
    services.fake.clock.stopAfter = 6;  // pauses of the conversation
    {
      link::SocketClient client = services.newClient();
      services.fake.sockets.faults.failCall(failingCall, kind);
      services.linkThread(client).run();
      run.calls = services.fake.sockets.faults.calls();
      services.fake.sockets.faults.failCall(0);
      run.told = services.fake.sockets.connections().empty() ? "" : services.fake.sockets.connections().front().sent;
      nextConversation(services);
    }
    EXPECT_EQ(services.fake.sockets.started(), 1);
    expectSurvived(services);
    run.folder = services.project.get().utf8();
    return run;
  }

  // Whatever became of the host's link, the companion can be asked.
  static void nextConversation(FakeSession& services) {
    services.fake.sockets.expect(link::companionPort, {{{frameOf("{}").substr(0, 4), {}}, {"7b7d", {}}}, {}, {}});
    link::SocketClient client = services.newClient();
    EXPECT_EQ(client.connect(link::localAddress, link::companionPort), 0);
    client.sendPacket("{}");
    std::string answer;
    EXPECT_EQ(client.receivePacket(answer, std::chrono::seconds(30)), 0);
    EXPECT_EQ(answer, "{}");
  }

  // The thread may end only by the clock of this test, and name nothing but its own steps.
  static void expectSurvived(const FakeSession& services) {
    const auto lines = splitItems(services.crashes(), '\n');
    EXPECT_EQ(lines.empty() ? "" : lines.back(), "Fun111");
    for (const std::string& line : lines) {
      EXPECT_TRUE(line == "Fun111" || line == "testConnect" || line == "creatClient" ||
                  line == "connectToServerForPthread")
          << line;
    }
    EXPECT_EQ(services.fake.sockets.stillOpen(), 0);
    EXPECT_FALSE(services.fake.sockets.misused());
  }
};

TEST_F(StreamFault, TheHostsAnswersBreakAtEveryByte) {
  const std::string stream = wholeStream();
  const Run good = converse({piecesOf(stream), StreamEnd::close, {}});
  ASSERT_EQ(messagesIn(good.told).size(), answers.size());
  EXPECT_EQ(good.folder, "D:\\project");
  const std::size_t step = tryEverything() ? 1 : 9;
  int injected = 0;
  for (const Kind& kind : kinds) {
    for (std::size_t at = 0; at < stream.size() && !HasFailure(); at += step) {
      SCOPED_TRACE(std::string(kind.name) + " at byte " + std::to_string(at));
      std::string damaged = stream;
      if (kind.damage != nullptr) {
        kind.damage(damaged, at);
      }
      const Run run = converse({piecesOf(damaged, kind.damage != nullptr ? never : at), kind.end, {}});
      if (kind.damage == nullptr) {  // as if nothing had been
        EXPECT_EQ(run.told, good.told);
        EXPECT_EQ(run.folder, good.folder);
      }
      ++injected;
    }
  }
  RecordProperty("faults", injected);
}

TEST_F(StreamFault, EverySocketCallFailsOnce) {
  int struck = 0;
  for (const auto kind : {Faults::Kind::fail, Faults::Kind::throwBadAlloc}) {
    int calls = converse({piecesOf(wholeStream()), StreamEnd::close, {}}).calls;
    EXPECT_GT(calls, 30);
    for (int number = 1; number <= calls; ++number, ++struck) {
      SCOPED_TRACE((kind == Faults::Kind::fail ? "fails " : "throws ") + std::to_string(number));
      calls = std::max(calls, converse({piecesOf(wholeStream()), StreamEnd::close, {}}, number, kind).calls);
    }
  }
  RecordProperty("faults", struck);
}

// A host that hangs for ever at some byte holds the thread, and lets go of it when the plug-in is loaded again.
TEST_F(StreamFault, TheHostHangsAtEveryByteUntilTheClientIsRetired) {
  const std::string stream = wholeStream().substr(0, 4 + 2 * answers[0].size() + 40);
  for (std::size_t at = 0; at < stream.size(); ++at) {
    FakeSession services;
    services.companionLink.setClientCreated(true);
    services.fake.sockets.expect(link::hostPort, {piecesOf(stream.substr(0, at)), StreamEnd::hang, {}});
    services.fake.sockets.listen(link::companionPort, {});
    link::SocketClient client = services.newClient();
    link::LinkThread link = services.linkThread(client);
    services.fake.clock.stopAfter = 50;
    std::thread thread([&] { link.run(); });
    services.fake.sockets.waitUntilBlocked();
    client.retire();
    thread.join();
    expectSurvived(services);
  }
  RecordProperty("faults", static_cast<int>(stream.size()));
}

}  // namespace
}  // namespace vernoxa
