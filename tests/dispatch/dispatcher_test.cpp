#include "dispatch/dispatcher.h"

#include "designs/design_handlers.h"
#include "support/session_test.h"
#include "text/outside_json.h"

namespace vernoxa::inline dispatch {
namespace {

using namespace testing;

Outcome echo(RequestCall& call, plugin::Session&) {
  call.host.evaluate(Script("ran ").bare(call.request.command));
  Outcome outcome = Outcome::success();
  outcome.reply->data.add("text", call.request.text("text"));
  outcome.reply->data.add("number", Json::number(call.request.number("number")));
  return outcome;
}

constexpr std::array rows = {
    HandlerRow{"Echo", echo},
    HandlerRow{"Throw", [](RequestCall&, plugin::Session&) -> Outcome { throw std::runtime_error("handler"); }},
};

class DispatcherTest : public SessionTest {
 protected:
  // The reply; "refused" for that of the endpoint.
  std::string run(const std::string& message,
                  const Endpoint& endpoint = {rows, ::vernoxa::plugin::run<designs::applyReply>, "no"}) {
    const std::string reply = replyTo(endpoint, message, host_);
    return reply.starts_with("{\n\t\"ErrInfo\":\t\"") ? "refused" : reply;
  }
};

TEST_F(DispatcherTest, AnswersInItsOrderOfMembers) {
  EXPECT_EQ(run(u8R"({"Command":"Echo","Data":{"text":"理","number":"7"}})"_gbk),
            u8R"({"Data":{"text":"理","number":7},"Command":"Echo_EndResult","Result":"0"})"_gbk);
  EXPECT_EQ(run(R"({"Command":"Echo","Data":{"text":["7"]}})"),
            R"({"Data":{"text":"","number":0},"Command":"Echo_EndResult","Result":"0"})");
}

TEST_F(DispatcherTest, WhatIsNoCommandRunsNothing) {
  const std::array<std::string, 3> cases[] = {
      {"{\"Command\":\"Echo\"", "", "Error before: []\n"},
      {"{\"Command\":Echo}", "", "Error before: [Echo}]\n"},
      {"", "", "Error before: []\n"},
      {std::string(deepestOutsideJson + 1, '['), "", ""},  // refused in the traffic log
      {R"({"command":"Echo"})", "", "not value\n"},
      {R"({"Command":["Echo"]})", "", "not value\n"},
      {R"(["Command","Echo"])", "", "not value\n"},
      {R"({"Command":"echo"})", "refused", ""},
      {R"({"Command":"Echo "})", "refused", ""},
      {R"({"Command":"Nobody","Command":"Echo"})", "refused", ""},  // the first counts
  };
  for (const auto& [message, expected, printed] : cases) {
    fake.output.forget();
    EXPECT_EQ(run(message), expected) << message;
    EXPECT_EQ(fake.output.text(), printed + printed) << message;  // for the request, and the reply that it has not
  }
  EXPECT_THAT(host_.scripts, IsEmpty());
}

TEST_F(DispatcherTest, AnswersOfTheCompanionOnlyMoveTheProject) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"Command":"Echo_EndResult","Data":{"Path":"E:\\p"}})", "C:\\App"},
      {R"({"Command":"_EndResultEcho"})", "C:\\App"},
      {R"({"Command":"FileStatus_EndResult"})", "C:\\App"},
      {R"({"Command":"FileStatus_EndResult","Data":{"Path":""}})", "C:\\App"},
      {u8R"({"Command":"FileStatus_EndResult","Data":{"Path":"E:\\理"}})"_gbk, u8"E:\\理"_gbk},
  };
  for (const auto& [message, base] : cases) {
    EXPECT_EQ(run(message), "") << message;
    EXPECT_EQ(project.get(), pathOf(base)) << message;
  }
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
  const std::tuple<std::string, std::string, std::string, std::size_t> cases[] = {
      {nameless.utf8(), "C:\\\\S~1.DSN", "Open", 0},
      {"a.dsn;C:\\b.dsn", "C:\\\\b.dsn", "Open", 1},
      {"C:\\b.dsn;a.dsn;b.dsn", "C:\\\\b.dsn", "Open", 2},
      {"b.dsn", "b.dsn", "Close", 1},
      {"", "C:\\\\b.dsn", "Close", 0},
  };
  for (const auto& [open, wanted, state, boxes] : cases) {
    fake.messages.forget();
    host_.answer("InitPath", open);
    EXPECT_EQ(
        run(R"({"Command":"CheckOpenState","Data":{"ProjectPath":")" + wanted + "\"}}", plugin::companionEndpoint()),
        R"({"Data":{"State":")" + state + R"("},"Command":"CheckOpenState_EndResult","Result":"0"})");
    EXPECT_THAT(fake.messages.shown(), AllOf(SizeIs(boxes), Each(u8"文件一打开路径异常"_gbk))) << open;
  }
  EXPECT_THAT(traffic(), HasSubstr("Get file:C:\\b.dsn\nopen file:a.dsn\nopen file:C:\\b.dsn\n"
                                   "file state:1011 Open\n"));
}

}  // namespace
}  // namespace vernoxa::inline dispatch
