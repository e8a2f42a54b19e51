// More of everything than an editor sees in its life, while memory stays what it was.
#include <gtest/gtest.h>

#include <algorithm>

#include "link/link_thread.h"
#include "link/socket_client.h"
#include "system/clock.h"
#include "text/text.h"
#include "trust/failing_memory.h"
#include "trust/trust_rig_tcl.h"
#include "wire/packet_text.h"

namespace vernoxa {
namespace {

// Both ends of every connection, remembering nothing of what went over it.
class TirelessSockets final : public Sockets {
 public:
  long connections = 0;
  long stillOpen = 0;
  long requests = 0;

  void startUp() override { ++started; }
  void cleanUp() override { --started; }
  std::optional<Handle> open() override {
    ++stillOpen;
    return Handle(1);
  }
  bool connect(Handle, const char*, std::uint16_t) override {
    ++connections;
    received_.clear();
    answer_.clear();
    return true;
  }
  int send(Handle, std::string_view bytes) override {
    received_.append(bytes);
    if (const auto messages = messagesIn(received_); !messages.empty()) {
      ++requests;
      answer_.append(frameOf(answerTo(messages.front())));
      received_.clear();
    }
    return static_cast<int>(bytes.size());
  }
  int receive(Handle, std::span<char> buffer) override {
    const std::size_t count = std::min(buffer.size(), answer_.size());
    std::copy_n(answer_.begin(), count, buffer.begin());
    answer_.erase(0, count);
    return static_cast<int>(count);
  }
  bool waitReadable(Handle, std::chrono::milliseconds) override { return true; }
  void shutDown(Handle) override {}
  void close(Handle) override { --stillOpen; }
  int lastErrorNumber() override { return 0; }

  long started = 0;

 private:
  // A working day that never ends: a design is opened, then closed, then nothing is new.
  std::string answerTo(const std::string& request) {
    if (request.find("GetNewOpenPath") == std::string::npos) {
      return R"({"Result":"0","Data":{"PinCount":"12","Path":"D:\\project"}})";
    }
    switch (++polls_ % 3) {
      case 0:
        return R"({"Result":"0","Data":{"ProjectPath":"D:\\a.dsn","CloseFile":""}})";
      case 1:
        return R"({"Result":"0","Data":{"CloseFile":"D:\\a.dsn"}})";
      default:
        return R"({"Result":"1","Data":{},"ErrInfo":"No file!"})";
    }
  }

  std::string received_;
  std::string answer_;
  long polls_ = 0;
};

// Time that only adds up. Ends the thread when it has run out.
class PassingClock final : public Clock {
 public:
  explicit PassingClock(std::chrono::hours end) : end_(end) {}
  LocalTime localTime() override { return {}; }
  std::chrono::milliseconds monotonic() override { return now_; }
  void sleep(std::chrono::milliseconds duration) override {
    now_ += duration;
    if (now_ >= end_) {
      throw ClockStopped();
    }
  }

 private:
  std::chrono::milliseconds now_{0};
  std::chrono::milliseconds end_;
};

struct Held {
  long blocks = liveBlocks();
  long bytes = liveBytes();
};

class Load : public testing::Test, protected FakeSession {};

TEST_F(Load, LinkThreadForSimulatedHours) {
  const std::chrono::hours hours(tryEverything() ? 24 * 7 : 6);
  PassingClock clock(hours);
  TirelessSockets sockets;
  companionLink.setClientCreated(true);
  logs.reportCrash("before");  // what the last line of the log needs is there now
  {
    link::SocketClient client(sockets, clock, fake.output, logs);
    const long begun = liveBlocks();
    link::LinkThread(client, companionLink, part<const link::FileStatus>(), sockets, clock, fake.output, logs).run();
    EXPECT_LE(liveBlocks(), begun + 4) << "blocks stay behind";  // what the connection holds
  }
  EXPECT_EQ(crashes(), "before\nFun111");
  EXPECT_GT(sockets.requests, hours.count() * 3600 / 10);
  EXPECT_EQ(sockets.stillOpen, 0);
  EXPECT_EQ(sockets.started, 0);
  RecordProperty("hours", static_cast<int>(hours.count()));
  RecordProperty("requests", static_cast<int>(sockets.requests));
}

TEST_F(Load, ConnectionsOneAfterTheOther) {
  const int wanted = tryEverything() ? 100000 : 5000;
  TirelessSockets sockets;
  std::string answer(100, ' ');
  const Held begun;
  for (int count = 0; count < wanted; ++count) {
    link::SocketClient client(sockets, fake.clock, fake.output, logs);
    ASSERT_EQ(client.connect(link::localAddress, link::companionPort), 0);
    client.sendPacket(R"({"Command":"GetSelfId","Data":{},"Result":"0"})");
    ASSERT_EQ(client.receivePacket(answer, std::chrono::seconds(30)), 0);
  }
  EXPECT_LE(liveBlocks(), begun.blocks + 2) << "blocks stay behind";  // the last message and answer
  EXPECT_EQ(sockets.connections, wanted);
  EXPECT_EQ(sockets.stillOpen, 0);
  EXPECT_EQ(sockets.started, 0);
  RecordProperty("connections", wanted);
}

TEST_F(Load, PacketsThroughBothDoors) {
  const int wanted = tryEverything() ? 1000000 : 20000;
  std::vector<Words> packets;
  for (const auto& [door, target] :
       {std::pair("packetParser", "companion_packet"), std::pair("packetParserForPthread", "thread_packet")}) {
    for (const KeptInput& input : keptInputs(target)) {
      packets.push_back({door, packetTextOf(input.rest)});
    }
  }
  const int packetsOfOneRound = static_cast<int>(5000 / packets.size() * packets.size());  // each round ends alike
  TrustHost host;
  host.answer = "0";
  TrustLoad load;                                        // one session, as an editor has for days
  load.fake.files.removeFolder("C:\\App\\Script\\Log");  // no traffic log
  load.beginSession();
  Held first;
  for (int sent = 0; sent < wanted;) {
    for (int count = 0; count < packetsOfOneRound; ++count, ++sent) {
      const auto answer = host.call(packets[static_cast<std::size_t>(sent) % packets.size()]);
      ASSERT_EQ(answer.status, commandDone);
    }
    load.fake.messages.forget();
    load.fake.output.forget();
    if (sent == 2 * packetsOfOneRound) {  // all caches are filled by now
      first = Held();
    } else if (sent > 2 * packetsOfOneRound) {
      ASSERT_EQ(Held().blocks, first.blocks) << "blocks stay behind after " << sent << " packets";
      ASSERT_LE(Held().bytes, first.bytes) << "something grows";
    }
  }
  EXPECT_EQ(load.crashes(), "");
  RecordProperty("packets", wanted);
}

// However large a module is: the placement is answered, nothing is placed and nothing of it stays in memory.
TEST_F(Load, HugeModules) {
  const std::size_t size = (tryEverything() ? std::size_t{100} : std::size_t{1}) << 20U;
  const struct {
    const char* begin;
    const char* repeated;
    const char* end;
  } modules[] = {
      {R"({"lib":[)", "{},", "{}]"},  // an end is missing
      {R"({"lib":)", "[", ""},       {R"({"lib":{)", R"("a":[],)", R"("a":1}})"},
      {R"({"lib":")", "x", R"("})"}, {"", "\\", ""},
  };
  const Words asked = {"packetParser",
                       packetTextOf(R"({"Command":"PlaceDSNModule","Data":{"dsnDatPath":"C:\\m.json"}})")};
  TrustHost host;
  host.answer = "1";
  for (const auto& each : modules) {
    TrustLoad load;
    load.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "library");
    std::string module = each.begin;
    while (module.size() < size) {
      module.append(each.repeated);
    }
    load.fake.files.addFile("C:\\m.json", module + each.end);
    load.beginSession();
    const std::size_t before = load.fake.files.entries("C:").size();
    const long begun = liveBlocks();
    EXPECT_NE(messageOf(host.call(asked).text).message.find(R"("Result":"0")"), std::string::npos);
    host.call({"placeMarketPart"});
    EXPECT_LE(liveBlocks(), begun + 64) << each.repeated;                      // what the placement keeps in mind
    EXPECT_EQ(load.fake.files.entries("C:").size(), before) << each.repeated;  // no library is left
    EXPECT_EQ(load.crashes(), "");
  }
  RecordProperty("megabytes", static_cast<int>(size >> 20U));
}

}  // namespace
}  // namespace vernoxa
