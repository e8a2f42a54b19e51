// A conversation of the link that breaks at every byte, in every way that a stream can break.
#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "link/link_thread.h"
#include "link/socket_client.h"
#include "system/fake_world.h"
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

// The stream as a well-behaved peer delivers it: header and payload apart.
std::vector<Piece> whole(const std::string& stream) {
  std::vector<Piece> pieces;
  for (std::size_t at = 0; at < stream.size();) {
    const std::size_t payload =
        static_cast<unsigned char>(stream[at]) + 256U * static_cast<unsigned char>(stream[at + 1]);
    pieces.push_back({stream.substr(at, 4), {}});
    pieces.push_back({stream.substr(at + 4, payload), {}});
    at += 4 + payload;
  }
  return pieces;
}

// The piece that holds that byte, and the byte's place in it.
struct Place {
  std::size_t piece;
  std::size_t offset;
};

Place placeOf(const std::vector<Piece>& pieces, std::size_t at) {
  std::size_t piece = 0;
  while (at >= pieces[piece].bytes.size()) {
    at -= pieces[piece++].bytes.size();
  }
  return {piece, at};
}

using Damage = void (*)(Peer& peer, Place place);

void splitBefore(Peer& peer, Place place) {
  Piece rest{peer.pieces[place.piece].bytes.substr(place.offset), std::chrono::minutes(10)};
  peer.pieces[place.piece].bytes.resize(place.offset);
  peer.pieces.insert(peer.pieces.begin() + static_cast<std::ptrdiff_t>(place.piece) + 1, rest);
  std::erase_if(peer.pieces, [](const Piece& piece) { return piece.bytes.empty(); });
}

void cut(Peer& peer, Place place) {
  peer.pieces.resize(place.piece + 1);
  peer.pieces.back().bytes.resize(place.offset);
  std::erase_if(peer.pieces, [](const Piece& piece) { return piece.bytes.empty(); });
}

struct Kind {
  const char* name;
  Damage damage;
  bool harmless;  // inside a payload: the conversation goes on as if nothing had been
};

const std::array kinds = {
    Kind{"late and split", splitBefore, true},
    Kind{"closed", cut, false},
    Kind{"reset",
         [](Peer& peer, Place place) {
           cut(peer, place);
           peer.end = StreamEnd::fail;
         },
         false},
    Kind{"one bit changed",
         [](Peer& peer, Place place) {
           char& byte = peer.pieces[place.piece].bytes[place.offset];
           byte = static_cast<char>(byte ^ 0x10);
         },
         false},
    Kind{"no digit", [](Peer& peer, Place place) { peer.pieces[place.piece].bytes[place.offset] = 'z'; }, false},
    Kind{"NUL", [](Peer& peer, Place place) { peer.pieces[place.piece].bytes[place.offset] = '\0'; }, false},
    Kind{"repeated",
         [](Peer& peer, Place place) {
           std::string& bytes = peer.pieces[place.piece].bytes;
           bytes.insert(place.offset, 1, bytes[place.offset]);
         },
         false},
    Kind{"lost", [](Peer& peer, Place place) { peer.pieces[place.piece].bytes.erase(place.offset, 1); }, false},
    Kind{"a browser's request",
         [](Peer& peer, Place place) { peer.pieces[place.piece].bytes.insert(place.offset, "GET / HTTP/1.1\r\n\r\n"); },
         false},
};

constexpr int pausesOfTheConversation = 6;

class StreamFault : public testing::Test {
 protected:
  struct Run {
    std::string told;     // everything that was sent to the host
    std::string crashes;  // operations in the crash log
    std::string folder;   // the project's folder as the companion named it
    int calls = 0;        // of sockets
  };

  static Run converse(Peer host, int failingSend = 0) {
    FakeSession services;
    Run run;
    services.companionLink.setClientCreated(true);
    services.fake.sockets.expect(link::hostPort, std::move(host));
    services.fake.sockets.listen(link::companionPort, {});
    services.fake.clock.stopAfter = pausesOfTheConversation;
    {
      link::SocketClient client = services.newClient();
      services.fake.sockets.faults.failCall(failingSend);
      services.linkThread(client).run();
      run.calls = services.fake.sockets.faults.calls();
      services.fake.sockets.faults.failCall(0);
      run.told = services.fake.sockets.connections().empty() ? "" : services.fake.sockets.connections().front().sent;
      nextConversation(services);
    }
    EXPECT_EQ(services.fake.sockets.stillOpen(), 0);
    EXPECT_EQ(services.fake.sockets.started(), 1);
    EXPECT_FALSE(services.fake.sockets.misused());
    run.crashes = services.crashes();
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
  static void expectSurvived(const std::string& crashes) {
    const auto lines = splitItems(crashes, '\n');
    EXPECT_EQ(lines.empty() ? "" : lines.back(), "Fun111");
    for (const std::string& line : lines) {
      EXPECT_TRUE(line == "Fun111" || line == "creatClient" || line == "connectToServerForPthread") << line;
    }
  }
};

TEST_F(StreamFault, TheHostsAnswersBreakAtEveryByte) {
  const std::string stream = wholeStream();
  const Run good = converse({whole(stream), StreamEnd::close, {}});
  ASSERT_EQ(messagesIn(good.told).size(), answers.size());
  EXPECT_EQ(good.folder, "D:\\project");
  const std::size_t step = tryEverything() ? 1 : 9;
  int injected = 0;
  for (const Kind& kind : kinds) {
    for (std::size_t at = 0; at < stream.size() && !HasFailure(); at += step) {
      SCOPED_TRACE(std::string(kind.name) + " at byte " + std::to_string(at));
      Peer peer{whole(stream), StreamEnd::close, {}};
      const Place place = placeOf(peer.pieces, at);
      kind.damage(peer, place);
      const Run run = converse(std::move(peer));
      expectSurvived(run.crashes);
      const bool inHeader = place.piece % 2 == 0 && place.offset > 0;
      if (kind.harmless && !inHeader) {
        EXPECT_EQ(run.told, good.told);
        EXPECT_EQ(run.folder, good.folder);
      }
      ++injected;
    }
  }
  RecordProperty("faults", injected);
}

// Half a connection: what the plug-in sends no longer arrives, from any call on.
TEST_F(StreamFault, EverySocketCallFailsOnce) {
  int number = 1;
  for (int calls = number; calls >= number; ++number) {
    SCOPED_TRACE(number);
    const Run run = converse({whole(wholeStream()), StreamEnd::close, {}}, number);
    expectSurvived(run.crashes);
    calls = run.calls;
  }
  EXPECT_GT(number, 30);
  RecordProperty("faults", number - 2);
}

// A host that hangs for ever at some byte holds the thread, and lets go of it when the plug-in is loaded again.
TEST_F(StreamFault, TheHostHangsAtEveryByteUntilTheClientIsRetired) {
  const std::string stream = wholeStream().substr(0, 4 + 2 * answers[0].size() + 40);
  int injected = 0;
  for (std::size_t at = 0; at < stream.size(); ++at) {
    FakeSession services;
    services.companionLink.setClientCreated(true);
    services.fake.sockets.expect(
        link::hostPort,
        {at == 0 ? std::vector<Piece>() : std::vector<Piece>{{stream.substr(0, at), {}}}, StreamEnd::hang, {}});
    services.fake.sockets.listen(link::companionPort, {});
    link::SocketClient client = services.newClient();
    link::LinkThread link = services.linkThread(client);
    services.fake.clock.stopAfter = 50;
    std::thread thread([&] { link.run(); });
    services.fake.sockets.waitUntilBlocked();
    client.retire();
    thread.join();
    expectSurvived(services.crashes());
    EXPECT_EQ(services.fake.sockets.stillOpen(), 0);
    EXPECT_FALSE(services.fake.sockets.misused());
    ++injected;
  }
  RecordProperty("faults", injected);
}

}  // namespace
}  // namespace vernoxa
