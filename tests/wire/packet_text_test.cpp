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
  const std::tuple<std::size_t, FrameHeader, unsigned> rows[] = {
      {0, {0, 0, 0, 0}, 0},
      {1, {1, 0, 0, 0}, 1},
      {4000, {'\xA0', '\x0F', 0, 0}, 4000},
      {65535, {'\xFF', '\xFF', 0, 0}, 65535},
      {65536, {0, 0, 1, 0}, 0},
      {70000, {'\x70', '\x11', 1, 0}, 4464},
      {0xFEDCBA98, {'\x98', '\xBA', '\xDC', '\xFE'}, 0xBA98},
  };
  for (const auto& [bytes, header, counted] : rows) {
    EXPECT_EQ(frameHeaderFor(bytes), header) << bytes;
    EXPECT_EQ(payloadBytesOf(header), bytes);
    EXPECT_EQ(countedBytes(payloadBytesOf(header)), counted) << bytes;
  }
}

TEST(Envelope, WhatIsNoMessageSaysWhereAndWhy) {
  const auto failure = std::get<Failure>(parseMessage("{\"Command\":\"a\" nonsense}"));
  EXPECT_EQ(failure.where, Failure::Where::output);
  EXPECT_EQ(failure.what, "Error before: [nonsense}]\n");
  const auto beyond = std::get<Failure>(parseMessage(std::string(1001, '[')));
  EXPECT_EQ(beyond.where, Failure::Where::log);
  EXPECT_EQ(beyond.what, "JSON refused: nested deeper than 1000 levels");
  const auto many = std::get<Failure>(parseMessage("[" + std::string(2'100'000, ',')));
  EXPECT_EQ(many.what, "JSON refused: too many values");
}

class PacketLogTest : public testing::Test, protected FakeSession {
 protected:
  PacketLogTest() { enableTraffic(); }
  // The text, or "failure" and what a box would show.
  static std::string told(const Result<std::string>& result) {
    const auto* const text = std::get_if<std::string>(&result);
    return text != nullptr ? *text : "failure " + utf8(std::get<Failure>(result).shown);
  }
};

TEST_F(PacketLogTest, EncodingIsLogged) {
  LogWriter log = logs.openTraffic();
  EXPECT_EQ(told(encodePacket(u8"{理}"_gbk, log)), "7bc0ed7d");
  EXPECT_EQ(told(encodePacket("", log)), "");  // nothing to send, nothing to log
  EXPECT_EQ(traffic(), u8"return data:{理}\n7bc0ed7d"_gbk);
}

TEST_F(PacketLogTest, DecodingIsLogged) {
  LogWriter log = logs.openTraffic();
  EXPECT_EQ(told(decodePacket("7b4A7D", log)), "{J}");
  EXPECT_EQ(told(decodePacket("7bzz7dzz", log)), "failure " + utf8(u8"接收的数据异常"));
  EXPECT_EQ(traffic(), "====================decodePacket\n{J}\n====================decodePacket");
}

}  // namespace
}  // namespace vernoxa::inline wire
