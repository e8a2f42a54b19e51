#include "bom/bom_lists.h"

#include "support/session_test.h"

namespace vernoxa::bom {
namespace {

constexpr const char* fitted = "::capGenerateBOMUtil::getStickList";
constexpr const char* notFitted = "::capGenerateBOMUtil::getNotStickList";
constexpr const char* withoutNumber = "::capGenerateBOMUtil::getNoPartNumberList";

// "R1,R2/R3/R4" of three lists.
std::string referencesIn(JsonView lists) {
  std::string references;
  for (const JsonView list : lists) {
    std::string separator = list.name() == "Stick" ? "" : "/";
    for (const JsonView line : list) {
      references += std::exchange(separator, ",");
      references += line.member("PartRef").text().value_or("?");
    }
    references += separator == "/" ? separator : "";
  }
  return references;
}

class BomLists : public SessionTest {};

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
      {"no memory for the version", "GetProductVersion", "throw", true, "//", true},
      {"no memory for a list", notFitted, "throw", true, "R1,R2//", true},
  };
  host_.during = [this](const std::string& script) {
    const auto answer = host_.answers.find(script);
    if (answer != host_.answers.end() && answer->second.text == "throw") {
      throw std::bad_alloc();
    }
  };
  for (const auto& [what, list, answer, ok, expected, box] : cases) {
    host_.answers = {{fitted, {true, "1;a;R1;N;F;2 2;b;R2;N;F;2"}},
                     {notFitted, {true, "3;c;R3;N;F;2"}},
                     {withoutNumber, {true, "NULL;d;R4;N;F;2"}}};
    host_.answer(list, answer, ok);
    fake.messages.forget();
    EXPECT_EQ(referencesIn(readBomLists(host_, text, fake.messages).view()), expected) << what;
    EXPECT_EQ(fake.messages.shown(), std::vector<std::string>(box ? 1 : 0, u8"BOM读取出错"_gbk)) << what;
    EXPECT_EQ(host_.scripts.back(), box ? list : withoutNumber) << what;
  }
}

TEST_F(BomLists, AreMadeUnlessTheHostFails) {
  for (const bool ok : {true, false}) {
    host_.answer("generateBOMForPath", "", ok);
    EXPECT_EQ(generateBOMForPath(host_, "a.dsn", "Part Number", "Part Name"), ok);
  }
}

}  // namespace
}  // namespace vernoxa::bom
