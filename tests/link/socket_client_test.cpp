#include "link/socket_client.h"

#include <numeric>

#include "support/session_test.h"

namespace vernoxa::link {
namespace {

using namespace std::string_literals;
using std::chrono::milliseconds;
using std::chrono::seconds;

class SocketClientTest : public SessionTest {
 protected:
  int connectTo(Peer peer) {
    fake.sockets.expect(9601, std::move(peer));
    return client_.connect(localAddress, companionPort);
  }
  // What a received stream of these pieces gives: the message, or "-1", or what an exception says.
  std::string received(std::vector<Piece> pieces, StreamEnd end = StreamEnd::close,
                       std::optional<milliseconds> limit = std::nullopt) {
    connectTo({std::move(pieces), end, nullptr});
    std::string message = "untouched";
    try {
      const int status = client_.receivePacket(message, limit);
      EXPECT_EQ(message == "untouched", status != 0);
      return status == 0 ? message : std::to_string(status);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  }
  std::string receivedAtOnce(const std::string& stream, StreamEnd end = StreamEnd::close) {
    return received({{stream, {}}}, end);
  }
  FakeSockets::Connection last() { return fake.sockets.connections().back(); }

  SocketClient client_ = newClient();
};

TEST_F(SocketClientTest, FramesAtTheSizesThatMatter) {
  const std::pair<std::size_t, std::vector<std::size_t>> rows[] = {
      {0, {4}}, {1, {4, 2}}, {2000, {4, 4000}}, {2001, {4, 4000, 2}}, {4000, {4, 4000, 4000}}, {40000, {}},
  };
  for (const auto& [bytes, sends] : rows) {
    std::string message(bytes, '\0');
    std::iota(message.begin(), message.end(), '\1');
    ASSERT_EQ(connectTo({}), 0);
    client_.sendPacket(message);
    EXPECT_EQ(last().sent, frameOf(message)) << bytes;
    if (!sends.empty()) {
      EXPECT_EQ(last().sendSizes, sends);
    }
  }
}

TEST_F(SocketClientTest, SendingIsLoggedAndGoesOnWhereAPieceFails) {
  enableTraffic();
  connectTo({});
  client_.sendPacket(std::string(64, 'a'));
  EXPECT_EQ(traffic(), std::string(64, 'a') + "\nacBuf[0]:ffffff80\nacBuf[1]:0\nacBuf[2]:0\nacBuf[3]:0\nLength:128\n" +
                           frameOf(std::string(64, 'a')).substr(4) + "\n==========================send over");
  fake.sockets.faults.failCall(2);  // the header goes out, the first of two pieces does not, the second does
  client_.sendPacket(std::string(2001, 'a'));
  EXPECT_THAT(last().sendSizes, testing::ElementsAre(4U, 128U, 4U, 2U));
  EXPECT_TRUE(traffic().ends_with("\nerrno:10054\n==========================send over"));
}

TEST_F(SocketClientTest, ReceivingIsLogged) {
  enableTraffic();
  EXPECT_EQ(receivedAtOnce(frameOf(u8"{理}"_gbk)), u8"{理}"_gbk);
  EXPECT_EQ(traffic(),
            u8"revData[0]:8\nrevData[1]:0\nrevData[2]:0\nrevData[3]:0\nlen:8\n{理}\n"_gbk
            "==========================recv over");
}

// The header is what one receive brings; the payload may come in any pieces.
TEST_F(SocketClientTest, EverySplitAndEveryTruncation) {
  const std::string message = u8"{\"Command\":\"理\"}"_gbk;
  const std::string frame = frameOf(message);
  for (std::size_t size = 4; size < frame.size(); ++size) {
    EXPECT_EQ(received({{frame.substr(0, size), {}}, {frame.substr(size), {}}}), message) << size;
    EXPECT_EQ(receivedAtOnce(frame.substr(0, size)), "-1") << size;
    EXPECT_EQ(receivedAtOnce(frame.substr(0, size), StreamEnd::fail), "-1") << size;
  }
  EXPECT_EQ(received({}), "-1");
  EXPECT_EQ(received({}, StreamEnd::fail), "-1");
  EXPECT_EQ(receivedAtOnce(frameOf("")), "");
  // A header cut short is completed with zeros, and the rest of it is read as payload.
  EXPECT_EQ(received({{"\x02\0"s, {}}, {"7b", {}}}), "{");
  EXPECT_EQ(received({{frame.substr(0, 1), {}}, {frame.substr(1), {}}}), "");  // which begins with a NUL byte
}

TEST_F(SocketClientTest, OnlySixteenBitsOfTheLengthCount) {
  const std::string payload = frameOf(std::string(35000, 'm')).substr(4);
  const std::pair<std::string, std::size_t> rows[] = {
      {"\x70\x11\x01\0"s, 2232}, {"\0\0\x01\0"s, 0}, {"\xFE\xFF\xFF\xFF", 32767}, {"\xFF\xFF\0\0"s, 32767}};
  for (const auto& [header, characters] : rows) {
    EXPECT_EQ(receivedAtOnce(header + payload), std::string(characters, 'm'));
  }
}

TEST_F(SocketClientTest, PiecesEndAtTheirFirstNul) {
  const std::string header = frameOf("four").substr(0, 4);
  EXPECT_EQ(received({{header + "7b\0zzzz"s, {}}, {"7", {}}}), "{");  // "7b7", the odd digit dropped
  EXPECT_EQ(receivedAtOnce(header + std::string(8, '\0')), "");
  EXPECT_EQ(receivedAtOnce(header + "7bzzzzzz"), "received payload is no packet text");
}

TEST_F(SocketClientTest, TheLimitHoldsForTheWholeReply) {
  const std::string frame = frameOf("ok");
  std::vector<Piece> dripping = {{frame.substr(0, 4), seconds(8)}};
  for (std::size_t at = 4; at < frame.size(); ++at) {
    dripping.push_back({frame.substr(at, 1), seconds(8)});
  }
  const std::tuple<const char*, std::vector<Piece>, const char*> rows[] = {
      {"at once", {{frame, {}}}, "ok"},
      {"in time", {{frame.substr(0, 4), seconds(15)}, {frame.substr(4), milliseconds(14999)}}, "ok"},
      {"its end at the last moment",
       {{frame.substr(0, 4), seconds(15)}, {frame.substr(4, 2), milliseconds(14999)}, {frame.substr(6), {}}},
       "ok"},
      {"its end when the time is over",
       {{frame.substr(0, 4), seconds(15)}, {frame.substr(4, 2), seconds(15)}, {frame.substr(6), {}}},
       "-1"},
      {"header late", {{frame, milliseconds(30001)}}, "-1"},
      {"dripping", dripping, "-1"},
      {"silent", {}, "-1"},
  };
  for (const auto& [name, pieces, expected] : rows) {
    EXPECT_EQ(received(pieces, StreamEnd::hang, seconds(30)), expected) << name;
    EXPECT_EQ(received(pieces, StreamEnd::close, seconds(30)), expected) << name;
  }
  EXPECT_EQ(received({{frame, seconds(100000)}}), "ok");  // without a limit, however long
}

TEST_F(SocketClientTest, ConnectTellsWhichStepFailed) {
  fake.sockets.faults.failCall(1);
  EXPECT_EQ(connectTo({}), -1);
  EXPECT_EQ(fake.output.text(), "invalid socket!");
  fake.sockets.faults.failCall(2);
  EXPECT_EQ(connectTo({}), -1);
  EXPECT_EQ(client_.connect(localAddress, hostPort), -1);
  EXPECT_EQ(fake.output.text(), "invalid socket!connect error !connect error !");
}

TEST_F(SocketClientTest, NothingStaysBehind) {
  for (int times = 0; times < 3; ++times) {
    EXPECT_EQ(connectTo({}), 0);
    EXPECT_EQ(fake.sockets.stillOpen(), 1);  // a former connection is closed
  }
  {
    SocketClient probe = newClient();
    EXPECT_EQ(fake.sockets.started(), 3);
    EXPECT_EQ(probe.connect(localAddress, hostPort), -1);
  }
  EXPECT_EQ(fake.sockets.started(), 2);
  EXPECT_EQ(fake.sockets.stillOpen(), 1);
  EXPECT_FALSE(fake.sockets.misused());
}

TEST_F(SocketClientTest, WithoutAConnectionOrRetiredItOnlyFails) {
  std::string message;
  client_.sendPacket("{}");
  EXPECT_EQ(client_.receivePacket(message), -1);
  EXPECT_EQ(client_.receivePacket(message, seconds(30)), -1);
  connectTo({{{frameOf("late"), {}}}, StreamEnd::close, nullptr});
  client_.retire();
  EXPECT_EQ(client_.receivePacket(message), -1);
  client_.sendPacket("{}");
  EXPECT_EQ(last().sent, "");
  EXPECT_TRUE(last().closed);
  EXPECT_EQ(connectTo({}), -1);
  EXPECT_EQ(fake.sockets.stillOpen(), 0);
  EXPECT_FALSE(fake.sockets.misused());
}

}  // namespace
}  // namespace vernoxa::link
