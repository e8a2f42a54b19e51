#include "wire/packet_text.h"

#include <gmock/gmock.h>

#include "system/fake_world.h"
#include "wire/frame.h"

namespace vernoxa {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PacketText, EveryByteAndBack) {
  std::string bytes;
  std::string expected;
  for (int value = 0; value < 256; ++value) {
    bytes.push_back(static_cast<char>(value));
    expected.push_back("0123456789abcdef"[value / 16]);
    expected.push_back("0123456789abcdef"[value % 16]);
  }
  EXPECT_EQ(packetTextOf(bytes), expected);
  EXPECT_EQ(messageOf(expected).message, bytes);
}

// A fault is a pair that is not two digits, wherever the text is cut.
TEST(PacketText, EveryTruncationAndEveryFault) {
  const std::string text = "7bD6d0FF007d";
  const std::string message("{\xD6\xD0\xFF\0}", 6);
  for (std::size_t size = 0; size <= text.size(); ++size) {
    const DecodedPacket cut = messageOf(text.substr(0, size));
    EXPECT_TRUE(cut.valid) << size;
    EXPECT_EQ(cut.message, message.substr(0, size / 2)) << size;
  }
  for (const char bad : {'g', 'G', ' ', '/', ':', '@', '`', '\0', '\x80', '\xFF', '-', '+', 'x'}) {
    for (std::size_t index = 0; index < text.size(); ++index) {
      std::string faulty = text;
      faulty[index] = bad;
      const DecodedPacket decoded = messageOf(faulty);
      EXPECT_FALSE(decoded.valid) << index;
      EXPECT_EQ(decoded.message, message.substr(0, index / 2)) << index;
    }
  }
  EXPECT_TRUE(messageOf("7b7").valid);
  EXPECT_TRUE(messageOf("7bz").valid);  // the odd last character is not looked at
}

TEST(Frame, HeaderIsLittleEndian) {
  const struct {
    std::size_t bytes;
    FrameHeader header;
    unsigned counted;
  } rows[] = {
      {0, {0, 0, 0, 0}, 0},
      {1, {1, 0, 0, 0}, 1},
      {4000, {'\xA0', '\x0F', 0, 0}, 4000},
      {65535, {'\xFF', '\xFF', 0, 0}, 65535},
      {65536, {0, 0, 1, 0}, 0},
      {70000, {'\x70', '\x11', 1, 0}, 4464},
      {0xFEDCBA98, {'\x98', '\xBA', '\xDC', '\xFE'}, 0xBA98},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(frameHeaderFor(row.bytes), row.header) << row.bytes;
    EXPECT_EQ(payloadBytesOf(row.header), row.bytes);
    EXPECT_EQ(countedBytes(payloadBytesOf(row.header)), row.counted) << row.bytes;
  }
}

class PacketLogTest : public testing::Test, protected FakeServices {
 protected:
  PacketLogTest() { enableTraffic(); }
  std::string out_ = "old";
};

TEST_F(PacketLogTest, EncodingIsLogged) {
  EXPECT_EQ(encodePacket(services, "{理}", out_), 0);
  EXPECT_EQ(out_, "7bc0ed7d");
  EXPECT_EQ(traffic(), "return data:{理}\n7bc0ed7d");
}

TEST_F(PacketLogTest, EmptyMessageIsNotLogged) {
  EXPECT_EQ(encodePacket(services, "", out_), 0);
  EXPECT_EQ(out_, "");
  EXPECT_EQ(traffic(), "");
}

TEST_F(PacketLogTest, DecodingIsLogged) {
  EXPECT_EQ(decodePacket(services, "7b7D", out_), 0);
  EXPECT_EQ(out_, "{}");
  EXPECT_EQ(traffic(), "====================decodePacket\n{}");
  EXPECT_THAT(fake.messages.shown(), IsEmpty());
}

TEST_F(PacketLogTest, FaultIsShownOnceAndKeepsWhatWasBuilt) {
  EXPECT_EQ(decodePacket(services, "7bzz7dzz", out_), -1);
  EXPECT_EQ(out_, "{");
  EXPECT_EQ(traffic(), "====================decodePacket");
  EXPECT_THAT(fake.messages.shown(), ElementsAre("接收的数据异常"));
}

}  // namespace
}  // namespace vernoxa
