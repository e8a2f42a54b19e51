#include "bom/bom_lists.h"

#include "support/session_test.h"

namespace vernoxa::bom {
namespace {

using testing::ElementsAre;

constexpr const char* fitted = "::capGenerateBOMUtil::getStickList";
constexpr const char* notFitted = "::capGenerateBOMUtil::getNotStickList";
constexpr const char* withoutNumber = "::capGenerateBOMUtil::getNoPartNumberList";

class BomLists : public SessionTest {
 protected:
  BomLists() {
    host_.answer(fitted, "1;a;R1;N;F;2 2;b;R2;N;F;2");
    host_.answer(notFitted, "3;c;R3;N;F;2");
    host_.answer(withoutNumber, "NULL;d;R4;N;F;2");
  }
  // The references in the three lists, "R1,R2/R3/R4".
  std::string read() {
    host_.scripts.clear();
    fake.messages.forget();
    const Json data = readBomLists(host_, text, fake.messages);
    std::string references;
    for (const JsonView list : data.view()) {
      std::string separator = list.name() == "Stick" ? "" : "/";
      for (const JsonView line : list) {
        references += std::exchange(separator, ",");
        references += line.member("PartRef").text().value_or("?");
      }
      references += separator == "/" ? separator : "";
    }
    return references;
  }
};

TEST_F(BomLists, WhatCannotBeReadShowsOneBoxAndEndsTheReading) {
  const std::tuple<const char*, const char*, const char*, bool, const char*, bool> cases[] = {
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
  const auto before = host_.answers;
  for (const auto& [what, list, answer, ok, expected, box] : cases) {
    host_.answers = before;
    host_.answer(list, answer, ok);
    EXPECT_EQ(read(), expected) << what;
    EXPECT_EQ(fake.messages.shown(), std::vector<std::string>(box ? 1 : 0, u8"BOM读取出错"_gbk)) << what;
    EXPECT_EQ(host_.scripts.back(), box ? list : withoutNumber) << what;
  }
}

// Wherever it comes from, and the companion gets its reply.
TEST_F(BomLists, AnExceptionIsOneMoreReasonForTheBox) {
  host_.answer("GetProductVersion", "16.5");
  for (const std::string where : {"GetProductVersion", fitted, notFitted, "conversion"}) {
    int versions = 0;  // the command asks once before the bill is made, then the reading asks
    host_.during = [&](const std::string& script) {
      versions += script == "GetProductVersion" ? 1 : 0;
      if (script == where && versions == 2) {
        throw std::bad_alloc();
      }
    };
    fake.codePage.throwing = where == "conversion";
    host_.answer(notFitted, fake.codePage.throwing ? utf8(u8"3;电阻;R3;N;F;2") : "3;c;R3;N;F;2");
    fake.messages.forget();
    const Json read = Json::parse(replyTo(plugin::companionEndpoint(),
                                          R"({"Command":"GenerateBOM","Data":{"ProjectPath":"a.dsn"}})", host_))
                          .document;
    EXPECT_THAT(fake.messages.shown(), ElementsAre(u8"BOM读取出错"_gbk)) << where;
    EXPECT_EQ(read.member("Result").text(), "0") << where;
    const bool started = where == notFitted || where == "conversion";
    EXPECT_EQ(read.member("Data").member("Stick").size(), started ? 2U : 0U) << where;
    EXPECT_EQ(read.member("Data").member("NotStick").size(), 0U) << where;
  }
}

}  // namespace
}  // namespace vernoxa::bom
