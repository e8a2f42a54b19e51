#include "plugin/endpoints.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "support/fake_script_host.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"
#include "wire/packet_text.h"

namespace vernoxa::plugin {
namespace {

using testing::ElementsAre;

class EndpointsTest : public testing::Test, protected FakeSession {
 protected:
  using Command = CommandResult (*)(CommandCall&, Dispatcher&);

  CommandResult call(Command endpoint, const Words& words) {
    const TclWords held(words);
    const Arguments arguments = held.arguments();
    CommandCall each{arguments, host_};
    return endpoint(each, part<Dispatcher>());
  }
  std::string reply(Command endpoint, const std::string& message) {
    return messageOf(call(endpoint, {"packetParser", packetTextOf(message)}).text).message;
  }

  FakeScriptHost host_;
};

constexpr auto endpoints = {packetParser, packetParserForPthread};

TEST_F(EndpointsTest, WithoutAnArgumentNothingHappens) {
  for (const auto endpoint : endpoints) {
    EXPECT_EQ(call(endpoint, {"packetParser"}).text, "");
  }
  EXPECT_EQ(fake.locks.mostHeld, 0);
  EXPECT_EQ(fake.output.text(), "");
}

TEST_F(EndpointsTest, WhatIsNoPacketTextComesBackEncodedAgain) {
  for (const auto endpoint : endpoints) {
    EXPECT_EQ(call(endpoint, {"packetParser", "zz"}).text, "7a7a");
    EXPECT_EQ(call(endpoint, {"packetParser", "7b7d 7b7d"}).text, packetTextOf("7b7d 7b7d"));
  }
  EXPECT_THAT(fake.messages.shown(), testing::SizeIs(4));
  EXPECT_THAT(fake.messages.shown(), testing::Each(u8"接收的数据异常"_gbk));
  EXPECT_EQ(fake.locks.held, 0);
}

TEST_F(EndpointsTest, RequestsThatNameNoCommandHaveNoReply) {
  for (const auto endpoint : endpoints) {
    for (const char* const message : {"", "{", "{}", R"({"Command":null})", R"({"Data":{}})"}) {
      EXPECT_EQ(reply(endpoint, message), "") << message;
    }
  }
}

TEST_F(EndpointsTest, BeyondTheBoundsIsLoggedOnceAndNotAnswered) {
  enableTraffic();
  EXPECT_EQ(reply(packetParser, std::string(1001, '[')), "");
  EXPECT_THAT(traffic(), testing::EndsWith("[\nJSON refused: nested deeper than 1000 levels"));
  EXPECT_EQ(fake.output.text(), "");
}

TEST_F(EndpointsTest, EachNamesItsOwnFailure) {
  const auto expected = [](const char* failure) {
    return std::string("{\n\t\"ErrInfo\":\t\"") + failure +
           u8"\",\n\t\"Result\":\t\"1\",\n\t\"Data\":\t{\n\t},\n\t\"Command\":\t\"理_EndResult\"\n}"_gbk;
  };
  EXPECT_EQ(reply(packetParser, u8R"({"Command":"理"})"_gbk), expected("command error"));
  EXPECT_EQ(reply(packetParserForPthread, u8R"({"Command":"理"})"_gbk), expected("command1 error"));
}

TEST_F(EndpointsTest, HoldsItsLockFromTheDecodingToTheAnswer) {
  host_.during = [&](const std::string&) { EXPECT_EQ(fake.locks.held, 1); };
  reply(packetParser, R"({"Command":"ClearCurrentDesign"})");
  EXPECT_THAT(host_.scripts, ElementsAre("ClearCurrentDesign"));
  EXPECT_EQ(fake.locks.held, 0);
}

// A host script that runs the event loop calls the endpoints again before the first call is over.
TEST_F(EndpointsTest, IsEnteredAgainFromInside) {
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

TEST_F(EndpointsTest, AnExceptionGivesTheLockBack) {
  fake.output.throwing = true;
  EXPECT_THROW(call(packetParser, {"packetParser", "7b"}), std::bad_alloc);
  EXPECT_EQ(fake.locks.mostHeld, 1);
  EXPECT_EQ(fake.locks.held, 0);
}

TEST_F(EndpointsTest, WholeCallInTheTrafficLog) {
  enableTraffic();
  host_.answer("creatClient 1", "0");
  const std::string request = R"({"Command":"creatClient"})";
  const std::string answer = R"({"Data":{},"Command":"creatClient_EndResult","Result":"0"})";
  EXPECT_EQ(reply(packetParserForPthread, request), answer);
  EXPECT_EQ(traffic(),
            "====================decodePacket\n" + request + "\nreturn data:" + answer + "\n" + packetTextOf(answer));
}

}  // namespace
}  // namespace vernoxa::plugin
