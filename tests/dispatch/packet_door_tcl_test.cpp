#include "dispatch/packet_door.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "support/fake_script_host.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"
#include "wire/packet_text.h"

namespace vernoxa {
namespace {

using testing::ElementsAre;

class PacketDoorTest : public testing::Test, protected FakeServices {
 protected:
  using Door = CommandResult (*)(CommandCall&, Services&, PacketLock&);

  CommandResult call(Door door, const Words& words) {
    const TclWords held(words);
    const Arguments arguments = held.arguments();
    CommandCall each{arguments, host_};
    return door(each, services, lock_);
  }
  std::string reply(Door door, const std::string& message) {
    return messageOf(call(door, {"packetParser", packetTextOf(message)}).text).message;
  }

  FakeScriptHost host_;
  PacketLock lock_{fake.locks.create()};
};

constexpr auto doors = {packetParser, packetParserForPthread};

TEST_F(PacketDoorTest, WithoutAnArgumentNothingHappens) {
  for (const auto door : doors) {
    EXPECT_EQ(call(door, {"packetParser"}).text, "");
  }
  EXPECT_EQ(fake.locks.mostHeld, 0);
  EXPECT_EQ(fake.output.text(), "");
}

TEST_F(PacketDoorTest, WhatIsNoPacketTextComesBackEncodedOnceMore) {
  for (const auto door : doors) {
    EXPECT_EQ(call(door, {"packetParser", "zz"}).text, "7a7a");
    EXPECT_EQ(call(door, {"packetParser", "7b7d 7b7d"}).text, packetTextOf("7b7d 7b7d"));
  }
  EXPECT_THAT(fake.messages.shown(), testing::SizeIs(4));
  EXPECT_THAT(fake.messages.shown(), testing::Each("接收的数据异常"));
  EXPECT_EQ(fake.locks.held, 0);
}

TEST_F(PacketDoorTest, RequestsThatNameNoCommandHaveNoReply) {
  for (const auto door : doors) {
    for (const char* const message : {"", "{", "{}", R"({"Command":null})", R"({"Data":{}})"}) {
      EXPECT_EQ(reply(door, message), "") << message;
    }
  }
}

TEST_F(PacketDoorTest, EachDoorNamesItsOwnFailure) {
  const auto expected = [](const char* failure) {
    return std::string("{\n\t\"ErrInfo\":\t\"") + failure +
           "\",\n\t\"Result\":\t\"1\",\n\t\"Data\":\t{\n\t},\n\t\"Command\":\t\"理_EndResult\"\n}";
  };
  EXPECT_EQ(reply(packetParser, R"({"Command":"理"})"), expected("command error"));
  EXPECT_EQ(reply(packetParserForPthread, R"({"Command":"理"})"), expected("command1 error"));
}

TEST_F(PacketDoorTest, HoldsItsLockFromTheDecodingToTheAnswer) {
  host_.during = [&](const std::string&) { EXPECT_EQ(fake.locks.held, 1); };
  reply(packetParser, R"({"Command":"ClearCurrentDesign"})");
  EXPECT_THAT(host_.scripts, ElementsAre("ClearCurrentDesign"));
  EXPECT_EQ(fake.locks.held, 0);
}

// A host script that runs the event loop calls the doors again before the first call is over.
TEST_F(PacketDoorTest, IsEnteredAnewFromInside) {
  std::string inner;
  int depth = 0;
  host_.answer("creatClient", "0");
  host_.during = [&](const std::string&) {
    if (++depth == 1) {
      inner = reply(packetParserForPthread, R"({"Command":"creatClient"})");
    }
  };
  const std::string outer = reply(packetParser, R"({"Command":"AdjustRefAndValue"})");
  EXPECT_EQ(inner, R"({"Data":{},"Command":"creatClient_EndResult","Result":"0"})");
  EXPECT_EQ(outer, R"({"Data":{},"Command":"AdjustRefAndValue_EndResult","Result":"1","ErrInfo":""})");
  EXPECT_EQ(fake.locks.mostHeld, 2);
  EXPECT_EQ(fake.locks.held, 0);
}

TEST_F(PacketDoorTest, AnExceptionGivesTheLockBack) {
  fake.output.throwing = true;
  EXPECT_THROW(call(packetParser, {"packetParser", "7b"}), std::bad_alloc);
  EXPECT_EQ(fake.locks.mostHeld, 1);
  EXPECT_EQ(fake.locks.held, 0);
}

TEST_F(PacketDoorTest, WholeCallInTheTrafficLog) {
  enableTraffic();
  host_.answer("creatClient 1", "0");
  const std::string request = R"({"Command":"creatClient"})";
  const std::string answer = R"({"Data":{},"Command":"creatClient_EndResult","Result":"0"})";
  EXPECT_EQ(reply(packetParserForPthread, request), answer);
  EXPECT_EQ(traffic(),
            "====================decodePacket\n" + request + "\nreturn data:" + answer + "\n" + packetTextOf(answer));
}

}  // namespace
}  // namespace vernoxa
