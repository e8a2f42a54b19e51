#include "dispatch/dispatcher.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "support/fake_script_host.h"
#include "system/fake_world.h"

namespace vernoxa {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Outcome echo(const Request& request, HandlerContext& context) {
  context.host.evaluate(Script("ran ").bare(request.command));
  Outcome outcome = Outcome::success();
  outcome.reply->data.add("text", request.text("text"));
  outcome.reply->data.add("number", Json::number(request.number("number")));
  return outcome;
}

Outcome fail(const Request&, HandlerContext&) {
  return Outcome::failure("理由", repliedItself);
}

Outcome silent(const Request&, HandlerContext&) {
  return {handled, std::nullopt};
}

Outcome throwing(const Request&, HandlerContext&) {
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
    HandlerRow{"Stores", echo,
               needs(optional(text("price", "")).keptIn(&PlacementContext::price),
                     optional(textOrNumber("PartIndex", "")).keptIn(&PlacementContext::PartIndex),
                     text("value", "").keptIn(&PlacementContext::value))},
};

class DispatcherTest : public testing::Test, protected FakeServices {
 protected:
  // "status reply".
  std::string run(const std::string& message, Answers answers = Answers::accepted,
                  std::span<const HandlerRow> table = rows) {
    std::string reply;
    const int status = dispatch(table, answers, message, reply, host_, services);
    return std::to_string(status) + (reply.empty() ? "" : " " + reply);
  }

  FakeScriptHost host_;
};

TEST_F(DispatcherTest, AnswersInItsOrderOfMembers) {
  EXPECT_EQ(run(R"({"Command":"Echo","Data":{"text":"理","number":"7"}})"),
            R"(0 {"Data":{"text":"理","number":7},"Command":"Echo_EndResult","Result":"0"})");
  EXPECT_EQ(run(R"({"Command":"Fail"})"), R"(-3 {"Data":{},"Command":"Fail_EndResult","Result":"1","ErrInfo":"理由"})");
  EXPECT_EQ(run(R"({"Command":"Silent"})"), "0");
}

TEST_F(DispatcherTest, WhatIsNoCommandRunsNothing) {
  const struct {
    const char* message;
    const char* expected;
    const char* printed;
  } cases[] = {
      {"{\"Command\":\"Echo\"", "-2", "Error before: []\n"},
      {"{\"Command\":Echo}", "-2", "Error before: [Echo}]\n"},
      {"", "-2", "Error before: []\n"},
      {"{}", "-1", "not value\n"},
      {R"({"command":"Echo"})", "-1", "not value\n"},
      {R"({"Command":["Echo"]})", "-1", "not value\n"},
      {R"(["Command","Echo"])", "-1", "not value\n"},
      {R"({"Command":"echo"})", "-2", ""},
      {R"({"Command":"Echo "})", "-2", ""},
      {R"({"Command":""})", "-2", ""},
      {R"({"Command":"Nobody","Command":"Echo"})", "-2", ""},  // the first counts
  };
  std::string printed;
  for (const auto& each : cases) {
    EXPECT_EQ(run(each.message), each.expected) << each.message;
    EXPECT_EQ(fake.output.text(), printed += each.printed) << each.message;
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
      {R"({"Command":"FileStatus_EndResult","Data":{"Path":"E:\\理"}})", "E:\\理"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(run(each.message), "0") << each.message;
    EXPECT_EQ(state.folder.get(), pathOf(each.base)) << each.message;
  }
  EXPECT_EQ(run(R"({"Command":"FileStatus_EndResult","Data":{"Path":"F:\\q"}})", Answers::unknown), "-2");
  EXPECT_EQ(state.folder.get(), pathOf("E:\\理"));
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
    EXPECT_EQ(run(message(data)).substr(0, 2), each.good ? "0 " : "-1") << each.value;
    EXPECT_EQ(host_.scripts.empty(), !each.good) << each.value;
  }
  EXPECT_EQ(run(R"({"Command":"Needs"})"), "-1");
  EXPECT_EQ(run(R"({"Command":"Needs","Data":"text"})"), "-1");
  EXPECT_EQ(run(R"({"Command":"Needs","Data":["text"]})"), "-1");
}

TEST_F(DispatcherTest, MembersAreStoredEvenWhenTheRowThenFails) {
  state.placement.price = state.placement.PartIndex = state.placement.value = "old";
  EXPECT_EQ(run(R"({"Command":"Stores","Data":{"price":"1","PartIndex":12}})"), "-1");
  EXPECT_EQ(state.placement.price, "1");
  EXPECT_EQ(state.placement.PartIndex, "12");
  EXPECT_EQ(state.placement.value, "");
  EXPECT_EQ(run(R"({"Command":"Stores","Data":{"price":2,"PartIndex":[],"value":"v"}})").substr(0, 2), "0 ");
  EXPECT_EQ(state.placement.price, "");  // of another kind: as if it were missing
  EXPECT_EQ(state.placement.PartIndex, "");
  EXPECT_EQ(state.placement.value, "v");
  EXPECT_EQ(run(R"({"Command":"Stores"})"), "-1");
  EXPECT_EQ(state.placement.value, "");
}

TEST_F(DispatcherTest, ExceptionOfAHandlerIsShown) {
  EXPECT_EQ(run(R"({"Command":"Throw"})"), "-1");
  EXPECT_THAT(fake.messages.shown(), ElementsAre("格式有误"));
}

TEST_F(DispatcherTest, AnOpenPathWithoutAFolderShowsABoxAndCountsAsClosed) {
  const struct {
    const char* open;
    const char* wanted;
    const char* state;
    std::size_t boxes;
  } cases[] = {
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
    EXPECT_EQ(run(std::string(R"({"Command":"CheckOpenState","Data":{"ProjectPath":")") + each.wanted + "\"}}",
                  Answers::accepted, companionHandlers()),
              std::string(R"(0 {"Data":{"State":")") + each.state +
                  R"("},"Command":"CheckOpenState_EndResult","Result":"0"})");
    EXPECT_THAT(fake.messages.shown(),
                testing::AllOf(testing::SizeIs(each.boxes), testing::Each("文件一打开路径异常")));
  }
}

// Every row of both real tables, with each member that it needs missing or of every other kind.
TEST_F(DispatcherTest, NoRowRunsWithoutWhatItNeeds) {
  const std::vector<std::string> values = {"null", "true", "3", "\"text\"", "[]", "{}", "[[[[]]]]"};
  const auto fits = [](MemberKind kind, const std::string& value) {
    const bool isText = value == "\"text\"";
    switch (kind) {
      case MemberKind::text:
        return isText;
      case MemberKind::number:
        return value == "3";
      case MemberKind::textOrNumber:
        return isText || value == "3";
      case MemberKind::array:
        return value.front() == '[';
    }
    return false;
  };
  for (const auto table : {companionHandlers(), threadHandlers()}) {
    for (const HandlerRow& row : table) {
      for (const Member& spoiled : row.members) {
        for (const std::string& value : values) {
          if (!spoiled.needed || fits(spoiled.kind, value)) {
            continue;
          }
          Json message = Json::object();
          message.add("Command", row.name);
          const JsonView data = message.add("Data", Json::object());
          for (const Member& member : row.members) {
            if (member.needed) {
              const std::string good = member.kind == MemberKind::array ? "[]" : "\"1\"";
              message.addTo(data, member.name, Json::parse(&member == &spoiled ? value : good).document);
            }
          }
          host_.scripts.clear();
          EXPECT_EQ(run(message.printUnformatted(), Answers::accepted, table), "-1") << message.printUnformatted();
          EXPECT_THAT(host_.scripts, IsEmpty()) << message.printUnformatted();
        }
      }
    }
  }
}

TEST_F(DispatcherTest, AnyJsonIsAnswered) {
  const std::string deep = std::string(900, '[') + std::string(900, ']');
  const std::string huge(50000, '\xD6');
  for (const auto table : {companionHandlers(), threadHandlers()}) {
    for (const HandlerRow& row : table) {
      for (const std::string& data :
           {std::string("null"), std::string("[]"), std::string("\"ProjectPath\""), deep,
            "{\"ProjectPath\":" + deep + "}",
            "{\"ProjectPath\":\"" + huge + "\",\"FileName\":\"" + huge + "\",\"Status\":\"Open\"}",
            std::string(R"({"ProjectPath":"a","ProjectPath":"b","item":[null,{"PartRef":{}}],"Stick":[[],1]})")}) {
        std::string reply;
        const int status =
            dispatch(table, Answers::accepted, std::string(R"({"Command":")") + row.name + R"(","Data":)" + data + "}",
                     reply, host_, services);
        EXPECT_TRUE(status <= handled && status >= repliedItself) << row.name;
        EXPECT_TRUE(reply.empty() || Json::parse(reply).document.member("Command")) << row.name;
      }
    }
  }
}

}  // namespace
}  // namespace vernoxa
