#include "wire/packet_text.h"

#include <gtest/gtest.h>

#include "system/fake_world.h"
#include "text/gbk_literal.h"
#include "wire/envelope.h"
#include "wire/frame.h"

namespace vernoxa::inline wire {
namespace {

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
  const FrameHeader header = {'\x87', '\xA9', '\xCB', '\xFD'};
  EXPECT_EQ(frameHeaderFor(0xFDCBA987), header);
  EXPECT_EQ(payloadBytesOf(header), 0xFDCBA987U);
}

TEST(Envelope, AMessageHasFewerValuesThanAModule) {
  const auto refused = std::get<Failure>(parseMessage("[" + std::string(2'100'000, ',')));
  EXPECT_EQ(refused.where, Failure::Where::log);
  EXPECT_EQ(refused.what, "JSON refused: too many values");
}

TEST(PacketLog, ShowsMessagesBothWays) {
  FakeSession with;
  with.enableTraffic();
  LogWriter log = with.logs.openTraffic();
  EXPECT_EQ(std::get<std::string>(encodePacket(u8"{理}"_gbk, log)), "7bc0ed7d");
  EXPECT_EQ(std::get<std::string>(encodePacket("", log)), "");  // nothing to send, nothing to log
  const std::string_view endless("", std::string::npos / 2);    // more than there is memory for; not read
  EXPECT_EQ(utf8(std::get<Failure>(encodePacket(endless, log)).shown), utf8(u8"发送的数据异常"));
  EXPECT_EQ(std::get<std::string>(decodePacket("7b4A7D", log)), "{J}");
  EXPECT_EQ(utf8(std::get<Failure>(decodePacket("7bzz7dzz", log)).shown), utf8(u8"接收的数据异常"));
  EXPECT_EQ(with.traffic(),
            u8"return data:{理}\n7bc0ed7d\n"_gbk
            "====================decodePacket\n{J}\n====================decodePacket");
}

}  // namespace
}  // namespace vernoxa::inline wire
