// More of everything than an editor sees in its life, while memory stays what it was.
#include <gtest/gtest.h>

#include <tuple>

#include "trust/failing_memory.h"
#include "trust/trust_rig_tcl.h"
#include "wire/packet_text.h"

namespace vernoxa {
namespace {

class TirelessCompanion final : public AnsweringSockets {
  std::string replyTo(const std::string&) override { return R"({"Result":"0","Data":{"UserId":"7"}})"; }
};

struct Held {
  long blocks = liveBlocks();
  long bytes = liveBytes();
};

class Load : public testing::Test, protected FakeSession {};

TEST_F(Load, ConnectionsOneAfterTheOther) {
  const int wanted = tryEverything() ? 100000 : 5000;
  TirelessCompanion sockets;
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
  for (const char* const target : {"companion_packet", "thread_packet"}) {
    for (const KeptInput& input : keptInputs(target)) {
      packets.push_back(input.calls.front());
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
  // What a module begins with, what is repeated, and how it ends.
  constexpr std::tuple<const char*, const char*, const char*> modules[] = {
      {R"({"lib":[)", "{},", "{}]"},  // an end is missing
      {R"({"lib":)", "[", ""},       {R"({"lib":{)", R"("a":[],)", R"("a":1}})"},
      {R"({"lib":")", "x", R"("})"}, {"", "\\", ""},
  };
  const Words asked = {"packetParser",
                       packetTextOf(R"({"Command":"PlaceDSNModule","Data":{"dsnDatPath":"C:\\m.json"}})")};
  TrustHost host;
  host.answer = "1";
  for (const auto& [begin, repeated, end] : modules) {
    SCOPED_TRACE(repeated);
    TrustLoad load;
    load.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "library");
    std::string module = begin;
    while (module.size() < size) {
      module.append(repeated);
    }
    load.fake.files.addFile("C:\\m.json", module + end);
    load.beginSession();
    const std::size_t before = load.fake.files.entries("C:").size();
    const long begun = liveBlocks();
    EXPECT_NE(messageOf(host.call(asked).text).message.find(R"("Result":"0")"), std::string::npos);
    host.call({"placeMarketPart"});
    EXPECT_LE(liveBlocks(), begun + 64);                      // what the placement keeps in mind
    EXPECT_EQ(load.fake.files.entries("C:").size(), before);  // no library is left
    EXPECT_EQ(load.crashes(), "");
  }
  RecordProperty("modules", static_cast<int>(std::size(modules)));
  RecordProperty("megabytes", static_cast<int>(size >> 20U));
}

}  // namespace
}  // namespace vernoxa
