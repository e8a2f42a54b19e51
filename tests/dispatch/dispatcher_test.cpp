#include "dispatch/dispatcher.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "designs/design_handlers.h"
#include "support/fake_script_host.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"
#include "text/outside_json.h"

namespace vernoxa::inline dispatch {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Outcome echo(RequestCall& call, plugin::Session&) {
  call.host.evaluate(Script("ran ").bare(call.request.command));
  Outcome outcome = Outcome::success();
  outcome.reply->data.add("text", call.request.text("text"));
  outcome.reply->data.add("number", Json::number(call.request.number("number")));
  return outcome;
}

Outcome fail(RequestCall&, plugin::Session&) {
  return Outcome::failed(u8"理由"_gbk);
}

Outcome silent(RequestCall&, plugin::Session&) {
  return Outcome::silent();
}

Outcome throwing(RequestCall&, plugin::Session&) {
  throw std::runtime_error("handler");
}

constexpr std::array rows = {
    HandlerRow{"Echo", echo},
    HandlerRow{"Fail", fail},
    HandlerRow{"Silent", silent},
    HandlerRow{"Throw", throwing},
};

class DispatcherTest : public testing::Test, protected FakeSession {
 protected:
  // The reply; "refused" for that of the endpoint.
  std::string run(const std::string& message,
                  const Endpoint& endpoint = {rows, ::vernoxa::plugin::run<designs::applyReply>, "no"}) {
    const std::string reply = replyTo(endpoint, message, host_);
    return reply.starts_with("{\n\t\"ErrInfo\":\t\"") ? "refused" : reply;
  }

  FakeScriptHost host_;
};

TEST_F(DispatcherTest, AnswersInItsOrderOfMembers) {
  EXPECT_EQ(run(u8R"({"Command":"Echo","Data":{"text":"理","number":"7"}})"_gbk),
            u8R"({"Data":{"text":"理","number":7},"Command":"Echo_EndResult","Result":"0"})"_gbk);
  EXPECT_EQ(run(R"({"Command":"Echo","Data":{"text":["7"]}})"),
            R"({"Data":{"text":"","number":0},"Command":"Echo_EndResult","Result":"0"})");
  EXPECT_EQ(run(R"({"Command":"Fail"})"),
            u8R"({"Data":{},"Command":"Fail_EndResult","Result":"1","ErrInfo":"理由"})"_gbk);
  EXPECT_EQ(run(R"({"Command":"Silent"})"), "");
}

TEST_F(DispatcherTest, WhatIsNoCommandRunsNothing) {
  const std::string deep(deepestOutsideJson + 1, '[');
  const struct {
    std::string message;
    const char* expected;
    const char* printed;
  } cases[] = {
      {"{\"Command\":\"Echo\"", "", "Error before: []\n"},
      {"{\"Command\":Echo}", "", "Error before: [Echo}]\n"},
      {"", "", "Error before: []\n"},
      {deep, "", ""},  // refused in the traffic log
      {"{}", "", "not value\n"},
      {R"({"command":"Echo"})", "", "not value\n"},
      {R"({"Command":["Echo"]})", "", "not value\n"},
      {R"(["Command","Echo"])", "", "not value\n"},
      {R"({"Command":"echo"})", "refused", ""},
      {R"({"Command":"Echo "})", "refused", ""},
      {R"({"Command":""})", "refused", ""},
      {R"({"Command":"Nobody","Command":"Echo"})", "refused", ""},  // the first counts
  };
  std::string printed;
  for (const auto& each : cases) {
    EXPECT_EQ(run(each.message), each.expected) << each.message;
    printed.append(each.printed).append(each.printed);  // for the request, and for the reply that it has not
    EXPECT_EQ(fake.output.text(), printed) << each.message;
  }
  EXPECT_THAT(host_.scripts, IsEmpty());
}

TEST_F(DispatcherTest, AnswersOfTheCompanionOnlyMoveTheProject) {
  const struct {
    const char* message;
    const char* base;
  } cases[] = {
      {R"({"Command":"Echo_EndResult","Data":{"Path":"E:\\p"}})", "C:\\App"},
      {R"({"Command":"_EndResultEcho"})", "C:\\App"},
      {R"({"Command":"FileStatus_EndResult"})", "C:\\App"},
      {R"({"Command":"FileStatus_EndResult","Data":{"Path":""}})", "C:\\App"},
      {R"({"Command":"FileStatus_EndResult","Data":{"Path":7}})", "C:\\App"},
      {u8R"({"Command":"FileStatus_EndResult","Data":{"Path":"E:\\理"}})"_gbk, u8"E:\\理"_gbk},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(run(each.message), "") << each.message;
    EXPECT_EQ(project.get(), pathOf(each.base)) << each.message;
  }
  EXPECT_EQ(run(R"({"Command":"FileStatus_EndResult","Data":{"Path":"F:\\q"}})", {rows, nullptr, ""}), "refused");
  EXPECT_EQ(project.get(), pathOf(u8"E:\\理"_gbk));
}

TEST(HandlerRows, AnyTwoOfOneNameAreFound) {
  constexpr HandlerRow a{"A", echo};
  constexpr HandlerRow b{"B", echo};
  constexpr HandlerRow c{"C", echo};
  EXPECT_TRUE(namesDiffer(std::array{a, b, c}));
  EXPECT_FALSE(namesDiffer(std::array{a, a, c}) || namesDiffer(std::array{a, b, a}) ||
               namesDiffer(std::array{a, b, b}));
}

TEST_F(DispatcherTest, ExceptionOfAHandlerIsShown) {
  EXPECT_EQ(run(R"({"Command":"Throw"})"), "refused");
  EXPECT_THAT(fake.messages.shown(), ElementsAre(u8"格式有误"_gbk));
}

TEST_F(DispatcherTest, AnOpenPathWithoutAFolderShowsABoxAndCountsAsClosed) {
  enableTraffic();
  const FilePath nameless = FilePath::fromUtf8(utf8(u8"C:\\ṩ.dsn"));  // told by its short name
  fake.files.addFile(nameless, "");
  fake.files.shortPaths[nameless] = pathOf("C:\\S~1.DSN");
  const struct {
    std::string open;
    const char* wanted;
    const char* state;
    std::size_t boxes;
  } cases[] = {
      {nameless.utf8(), "C:\\\\S~1.DSN", "Open", 0},
      {"C:\\a.dsn;C:\\b.dsn", "C:\\\\b.dsn", "Open", 0},
      {"C:/b.dsn", "c:\\\\B.DSN", "Open", 0},
      {"a.dsn;C:\\b.dsn", "C:\\\\b.dsn", "Open", 1},
      {"C:\\b.dsn;a.dsn;b.dsn", "C:\\\\b.dsn", "Open", 2},
      {"b.dsn", "b.dsn", "Close", 1},
      {"", "C:\\\\b.dsn", "Close", 0},
  };
  for (const auto& each : cases) {
    fake.messages.forget();
    host_.answer("InitPath", each.open);
    EXPECT_EQ(
        run(std::string(R"({"Command":"CheckOpenState","Data":{"ProjectPath":")") + each.wanted + "\"}}",
            plugin::companionEndpoint()),
        std::string(R"({"Data":{"State":")") + each.state + R"("},"Command":"CheckOpenState_EndResult","Result":"0"})");
    EXPECT_THAT(fake.messages.shown(),
                testing::AllOf(testing::SizeIs(each.boxes), testing::Each(u8"文件一打开路径异常"_gbk)));
  }
  EXPECT_THAT(traffic(), testing::HasSubstr("Get file:C:\\b.dsn\nopen file:a.dsn\nopen file:C:\\b.dsn\n"
                                            "file state:1011 Open\n"));
}

}  // namespace
}  // namespace vernoxa::inline dispatch
