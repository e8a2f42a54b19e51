#include "dispatch/dispatcher.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "designs/design_handlers.h"
#include "support/fake_script_host.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"

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

using namespace row;

constexpr std::array rows = {
    HandlerRow{"Echo", echo},
    HandlerRow{"Fail", fail},
    HandlerRow{"Silent", silent},
    HandlerRow{"Throw", throwing},
    HandlerRow{"Needs", echo,
               needs(text("text", ""), number("number", ""), textOrNumber("either", ""), texts("array", ""))},
    HandlerRow{
        "Stores", echo,
        needs(optional(text("package", "")).keptBy(plugin::storeIn<&modules::PlacementContext::package>),
              optional(textOrNumber("PartIndex", "")).keptBy(plugin::storeIn<&modules::PlacementContext::PartIndex>),
              text("value", "").keptBy(plugin::storeIn<&modules::PlacementContext::value>))},
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
  EXPECT_EQ(run(R"({"Command":"Fail"})"),
            u8R"({"Data":{},"Command":"Fail_EndResult","Result":"1","ErrInfo":"理由"})"_gbk);
  EXPECT_EQ(run(R"({"Command":"Silent"})"), "");
}

TEST_F(DispatcherTest, WhatIsNoCommandRunsNothing) {
  const struct {
    const char* message;
    const char* expected;
    const char* printed;
  } cases[] = {
      {"{\"Command\":\"Echo\"", "", "Error before: []\n"},
      {"{\"Command\":Echo}", "", "Error before: [Echo}]\n"},
      {"", "", "Error before: []\n"},
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

TEST_F(DispatcherTest, NeededMembersAreOfTheirKind) {
  const auto message = [](const std::string& data) { return R"({"Command":"Needs","Data":{)" + data + "}}"; };
  const std::string wholes[] = {R"("text":"")", R"("number":1)", R"("either":"a")", R"("array":[])"};
  const struct {
    std::size_t member;
    const char* value;
    bool good;
  } cases[] = {
      {0, R"("text":1)", false},       {0, R"("text":null)", false},   {0, R"("Text":"a")", false},
      {0, R"("text":["a"])", false},   {0, R"("text":"a")", true},     {1, R"("number":"-12")", true},
      {1, R"("number":"1.5")", false}, {1, R"("number":1e300)", true}, {1, R"("number":"")", false},
      {1, R"("number":true)", false},  {2, R"("either":2.5)", true},   {2, R"("either":"")", true},
      {2, R"("either":{})", false},    {3, R"("array":{})", false},    {3, R"("array":"[]")", false},
      {3, R"("array":[1])", true},     {3, R"("a":1)", false},
  };
  for (const auto& each : cases) {
    std::string data;
    for (std::size_t index = 0; index < std::size(wholes); ++index) {
      data += (index == 0 ? "" : ",") + (index == each.member ? each.value : wholes[index]);
    }
    host_.scripts.clear();
    EXPECT_EQ(run(message(data)) != "refused", each.good) << each.value;
    EXPECT_EQ(host_.scripts.empty(), !each.good) << each.value;
  }
  EXPECT_EQ(run(R"({"Command":"Needs"})"), "refused");
  EXPECT_EQ(run(R"({"Command":"Needs","Data":"text"})"), "refused");
  EXPECT_EQ(run(R"({"Command":"Needs","Data":["text"]})"), "refused");
}

TEST_F(DispatcherTest, MembersAreStoredEvenWhenTheRowThenFails) {
  placement.package = placement.PartIndex = placement.value = "old";
  EXPECT_EQ(run(R"({"Command":"Stores","Data":{"package":"1","PartIndex":12}})"), "refused");
  EXPECT_EQ(placement.package, "1");
  EXPECT_EQ(placement.PartIndex, "12");
  EXPECT_EQ(placement.value, "");
  EXPECT_THAT(run(R"({"Command":"Stores","Data":{"package":2,"PartIndex":[],"value":"v"}})"),
              testing::StartsWith("{\"Data\""));
  EXPECT_EQ(placement.package, "");  // of another kind: as if it were missing
  EXPECT_EQ(placement.PartIndex, "");
  EXPECT_EQ(placement.value, "v");
  EXPECT_EQ(run(R"({"Command":"Stores"})"), "refused");
  EXPECT_EQ(placement.value, "");
}

TEST_F(DispatcherTest, ExceptionOfAHandlerIsShown) {
  EXPECT_EQ(run(R"({"Command":"Throw"})"), "refused");
  EXPECT_THAT(fake.messages.shown(), ElementsAre(u8"格式有误"_gbk));
}

TEST_F(DispatcherTest, AnOpenPathWithoutAFolderShowsABoxAndCountsAsClosed) {
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
}

}  // namespace
}  // namespace vernoxa::inline dispatch
