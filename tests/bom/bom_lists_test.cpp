#include "bom/bom_lists.h"

#include <gmock/gmock.h>

#include <new>

#include "dispatch/dispatcher.h"
#include "support/fake_script_host.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"

namespace vernoxa::bom {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* fitted = "::capGenerateBOMUtil::getStickList";
constexpr const char* notFitted = "::capGenerateBOMUtil::getNotStickList";
constexpr const char* withoutNumber = "::capGenerateBOMUtil::getNoPartNumberList";

class BomLists : public testing::Test {
 protected:
  BomLists() {
    host_.answer(fitted, "1;a;R1;N;F;2 2;b;R2;N;F;2");
    host_.answer(notFitted, "3;c;R3;N;F;2");
    host_.answer(withoutNumber, "NULL;d;R4;N;F;2");
  }
  // The references in the three lists, "R1,R2/R3/R4".
  std::string read() {
    host_.scripts.clear();
    with_.fake.messages.forget();
    const Json data = readBomLists(host_, with_.text, with_.fake.messages);
    std::string references;
    for (const JsonView list : data.view()) {
      references += references.empty() && list.name() == "Stick" ? "" : "/";
      for (const JsonView line : list) {
        references += (references.empty() || references.back() == '/' ? "" : ",");
        references += line.member("PartRef").text().value_or("?");
      }
    }
    return references;
  }

  FakeSession with_;
  FakeScriptHost host_;
};

TEST_F(BomLists, WhatCannotBeReadShowsOneBoxAndEndsTheReading) {
  const struct {
    const char* what;
    const char* list;
    const char* answer;
    bool ok;
    const char* expected;
    bool box;
  } cases[] = {
      {"all well", notFitted, "3;c;R3;N;F;2", true, "R1,R2/R3/R4", false},
      {"a further field", notFitted, "3;c;R3;N;F;2;more", true, "R1,R2/R3/R4", false},
      {"no parts", fitted, "", true, "/R3/R4", false},
      {"an error of the host", fitted, "no such list", false, "/R3/R4", false},
      {"a short element", notFitted, "3;c;R3;N;F;2 4;d;R9;N;F 5;e;R5;N;F;2", true, "R1,R2/R3/", true},
      {"an empty element", fitted, ";;R1;;; 1;a;R2;N;F", true, "R1//", true},
      {"two short ones", fitted, "1 2", true, "//", true},
      {"no list", notFitted, "3;c;R3;N;F;2 {4", true, "R1,R2//", true},
      {"no last list", withoutNumber, "{", true, "R1,R2/R3/", true},
  };
  for (const auto& each : cases) {
    const auto before = host_.answers;
    host_.answer(each.list, each.answer, each.ok);
    EXPECT_EQ(read(), each.expected) << each.what;
    EXPECT_THAT(with_.fake.messages.shown(),
                each.box ? testing::Matcher<std::vector<std::string>>(ElementsAre(u8"BOM读取出错"_gbk)) : IsEmpty())
        << each.what;
    EXPECT_EQ(host_.scripts.back(), each.box ? each.list : withoutNumber) << each.what;
    host_.answers = before;
  }
}

// Wherever it comes from, and the companion gets its reply.
TEST_F(BomLists, AnExceptionIsOneMoreReasonForTheBox) {
  host_.answer("GetProductVersion", "16.5");
  for (const char* where : {"GetProductVersion", fitted, notFitted, "conversion"}) {
    int versions = 0;  // the command asks once before the bill is made, then the reading asks
    host_.during = [&](const std::string& script) {
      versions += script == "GetProductVersion" ? 1 : 0;
      if (script == where && versions == 2) {
        throw std::bad_alloc();
      }
    };
    host_.answer(notFitted, std::string(where) == "conversion" ? utf8(u8"3;电阻;R3;N;F;2") : "3;c;R3;N;F;2");
    with_.fake.codePage.throwing = std::string(where) == "conversion";
    with_.fake.messages.forget();
    const std::string reply = with_.replyTo(plugin::companionEndpoint(),
                                            R"({"Command":"GenerateBOM","Data":{"ProjectPath":"a.dsn"}})", host_);
    EXPECT_THAT(with_.fake.messages.shown(), ElementsAre(u8"BOM读取出错"_gbk)) << where;
    const Json read = Json::parse(reply).document;
    EXPECT_EQ(read.member("Result").text(), "0") << where;
    const bool started = std::string(where) == notFitted || std::string(where) == "conversion";
    EXPECT_EQ(read.member("Data").member("Stick").size(), started ? 2U : 0U) << where;
    EXPECT_EQ(read.member("Data").member("NotStick").size(), 0U) << where;
  }
}

}  // namespace
}  // namespace vernoxa::bom
