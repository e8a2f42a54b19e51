#include "text/json.h"

#include <gtest/gtest.h>

#include "support/table.h"
#include "system/fake_world.h"
#include "text/json_escape.h"
#include "text/outside_json.h"

namespace vernoxa::inline text {
namespace {

TEST(Json, BytesPassUntouched) {
  const std::string text = "{\"Name\":\"\xD5\x5C\x5C\xD6\xD0\",\"\xD6\xD0\":\"\xE4\xB8\xAD\xFF\"}";
  const Json document = Json::parse(text).document;
  EXPECT_EQ(document.member("Name").text(), "\xD5\x5C\xD6\xD0");  // the second backslash was JSON's own escape
  EXPECT_EQ(document.member("\xD6\xD0").text(), "\xE4\xB8\xAD\xFF");
  EXPECT_EQ(document.printUnformatted(), text);
}

TEST(Json, ViewOfNothingAnswersNo) {
  const Json number = Json::parse("7").document;
  EXPECT_EQ(number.view().name(), "");
  for (const JsonView view : {JsonView(), number.view().member("a"), number.view().member("a").member("b")}) {
    EXPECT_FALSE(view.isObject() || view.isArray() || view.text() || view.wholeNumber());
    EXPECT_EQ(view.size(), 0U);
    EXPECT_EQ(view.name(), "");
    for (const JsonView child : view) {
      FAIL() << child.name();
    }
  }
  EXPECT_EQ(Json::parse(R"(["a"])").document.view().member("a").text(), std::nullopt);  // arrays have no names
}

TEST(Json, WholeNumbers) {
  for (const auto& row : rowsOf(R"(
      12 | 12
      -3.9 | -3
      1e99 | 2147483647
      -1e99 | -2147483648
      "-12" | -12
      "0012" | 12
      "9999999999" | 2147483647
      "-9999999999" | -2147483648)")) {
    EXPECT_EQ(Json::parse(row[0]).document.view().wholeNumber(), std::stoi(row[1])) << row[0];
  }
  for (const char* const none : {R"("")", R"("-")", R"("1.5")", R"(" 1")", R"("1 ")", R"("+1")", R"("0x1")", "true",
                                 "null", "[1]", R"({"a":1})"}) {
    EXPECT_FALSE(Json::parse(none).document.view().wholeNumber()) << none;
  }
}

TEST(Json, WhatStandsBehindAValueDoesNotCount) {
  for (const std::string& sound : {std::string("{\"a\":1} and more"), std::string("{\"a\":1}\0}}", 10)}) {
    const auto parsed = Json::parse(sound);
    EXPECT_TRUE(parsed.document && parsed.errorRest.empty()) << sound;
  }
  const auto cut = Json::parse(std::string("[\0]", 3));
  EXPECT_TRUE(!cut.document && cut.errorRest.empty());
}

TEST(Json, BuildsInOrderAndKeepsDuplicates) {
  Json document = Json::object();
  document.add("b", "1");
  document.add("a", Json::number(2));
  document.add("b", Json::boolean(true));
  const JsonView list = document.add("list", Json::array());
  document.appendTo(list, Json::string("x"));
  document.addTo(document.appendTo(list, Json::object()), "y", Json::copyOf(document.member("a")));
  EXPECT_EQ(document.printUnformatted(), R"({"b":"1","a":2,"b":true,"list":["x",{"y":2}]})");
  EXPECT_EQ(document.printFormatted(),
            "{\n\t\"b\":\t\"1\",\n\t\"a\":\t2,\n\t\"b\":\ttrue,\n\t\"list\":\t[\"x\", {\n\t\t\t\"y\":\t2\n\t\t}]\n}");
}

TEST(Json, SetKeepsThePlace) {
  Json document = Json::parse(R"({"a":"1","b":{"c":2},"d":"3"})").document;
  document.set(document.view(), "b", "new");
  document.set(document.view(), "e", "added");
  document.set(document.view(), "a", "first");
  EXPECT_EQ(document.printUnformatted(), R"({"a":"first","b":"new","d":"3","e":"added"})");
}

// Whole words are looked at, so each place in each size may be another one.
TEST(JsonEscape, OneByteAnywhereIsFound) {
  for (std::size_t size = 1; size < 40; ++size) {
    EXPECT_TRUE(isPlainInJson(std::string(size, 'x'))) << size;
    for (std::size_t place = 0; place < size; ++place) {
      for (const char byte : {' ', '!', '#', '[', ']', '~', '"', '\\', '\x1F', '\0', '\x80', '\xFF'}) {
        std::string text(size, 'x');
        text[place] = byte;
        const bool plain = byte >= ' ' && byte != '"' && byte != '\\';
        EXPECT_EQ(isPlainInJson(text), plain) << size << " " << place << " " << static_cast<int>(byte);
      }
    }
  }
}

TEST(JsonEscape, ANulIsWrittenToo) {
  char written[longestJsonEscape];
  const char* const end = putInJson(written, std::string_view("\0", 1));
  EXPECT_EQ(std::string(written, static_cast<std::size_t>(end - written)), "\\u0000");
}

std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  for (; count > 0; --count) {
    text += piece;
  }
  return text;
}

TEST(OutsideJson, IsBounded) {
  constexpr std::size_t longest = 33'554'432;
  constexpr const char* size = "longer than 32 MB";
  constexpr const char* depth = "nested deeper than 1000 levels";
  constexpr std::size_t most = 4'194'304;
  constexpr const char* count = "too many values";
  const std::string deepest = repeated("[", 1000) + repeated("]", 1000);
  const std::tuple<const char*, std::string, const char*> rows[] = {
      {"the longest text", '"' + std::string(longest - 2, 'x') + '"', ""},
      {"one byte more", '"' + std::string(longest - 1, 'x') + '"', size},
      {"what ends at a NUL", std::string("{}\0", 3) + std::string(longest, 'x'), ""},
      {"the deepest text", deepest, ""},
      {"one level more", "[" + deepest + "]", depth},
      {"behind a byte order mark", "\xEF\xBB\xBF \r\n[" + deepest + "]", depth},
      {"brackets behind a quote in a string", R"(["\"\\)" + repeated("[", 2000) + "\"]", ""},
      {"brackets behind a string", R"(["\\",)" + repeated("[", 1000), depth},
      {"one after the other", "[" + repeated("[\"\"],", 1500) + "1]", ""},
      {"behind the first value", "{} " + repeated("[", 2000), ""},
      {"behind a bracket that closes nothing", "] " + repeated("[", 2000), ""},
      {"behind a number", "1 " + repeated("[", 2000), ""},
      {"the most values", "[" + repeated("0,", most - 2) + "0]", ""},
      {"one value more", "[" + repeated("0,", most - 1) + "0]", count},
      {"objects", "[" + repeated("{},", most / 2), count},
      {"the most words", "[\"" + std::string(most - 2, ' ') + "x\"]", ""},
      {"words", "[\"" + std::string(most, ' ') + "\"]", count},
      {"no end to a string", "[\"" + repeated("\\", 2001), ""},
  };
  for (const auto& [what, text, refusal] : rows) {
    EXPECT_EQ(outsideJsonRefusal(text), refusal) << what;
  }
  EXPECT_EQ(outsideJsonRefusal("[" + repeated("0,", 1'048'574) + "0]", mostMessageValues), "");
  EXPECT_EQ(outsideJsonRefusal("[" + repeated("0,", 1'048'575) + "0]", mostMessageValues), count);
}

TEST(OutsideJson, ARefusalIsLogged) {
  FakeSession with;
  with.enableTraffic();
  EXPECT_FALSE(parseOutsideJson(repeated("[", 1001), with.logs));
  EXPECT_EQ(with.traffic(), "JSON refused: nested deeper than 1000 levels");
  EXPECT_FALSE(parseOutsideJson("[", with.logs));
  EXPECT_TRUE(parseOutsideJson("[]", with.logs));
  EXPECT_EQ(with.traffic(), "JSON refused: nested deeper than 1000 levels");
}

}  // namespace
}  // namespace vernoxa::inline text
