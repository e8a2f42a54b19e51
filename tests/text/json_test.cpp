#include "text/json.h"

#include <gtest/gtest.h>

#include "support/table.h"
#include "text/json_escape.h"

namespace vernoxa::inline text {
namespace {

TEST(Json, BytesPassUntouched) {
  const std::string text = "{\"Name\":\"\xD5\x5C\x5C\xD6\xD0\",\"\xD6\xD0\":\"\xE4\xB8\xAD\xFF\"}";
  const Json document = Json::parse(text).document;
  EXPECT_EQ(document.member("Name").text(), "\xD5\x5C\xD6\xD0");  // the second backslash was JSON's own escape
  EXPECT_EQ(document.member("\xD6\xD0").text(), "\xE4\xB8\xAD\xFF");
  EXPECT_EQ(document.printUnformatted(), text);
}

TEST(Json, NamesAreComparedWithCase) {
  const Json document = Json::parse(R"({"data":1,"Data":2,"Data":3,"DATA":4})").document;
  EXPECT_EQ(document.member("Data").wholeNumber(), 2);
  EXPECT_FALSE(document.member("dAta"));
  EXPECT_FALSE(document.member(""));
  EXPECT_EQ(document.view().size(), 4U);
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
      3.9 | 3
      1e99 | 2147483647
      -1e99 | -2147483648
      "12" | 12
      "-12" | -12
      "0012" | 12
      "2147483647" | 2147483647
      "9999999999" | 2147483647
      "-9999999999" | -2147483648)")) {
    EXPECT_EQ(Json::parse(row[0]).document.view().wholeNumber(), std::stoi(row[1])) << row[0];
  }
  for (const char* const none : {R"("")", R"("-")", R"("1.5")", R"(" 1")", R"("1 ")", R"("+1")", R"("0x1")", "true",
                                 "null", "[1]", R"({"a":1})"}) {
    EXPECT_FALSE(Json::parse(none).document.view().wholeNumber()) << none;
  }
}

TEST(Json, ParsingStopsWhereTheTextIsNoJson) {
  const struct {
    std::string text;
    bool parsed;
    std::string rest;
  } rows[] = {
      {"{\"a\":1} and more", true, ""},
      {std::string("{\"a\":1}\0}}", 10), true, ""},
      {"", false, ""},
      {"nonsense", false, "nonsense"},
      {"{\"a\":x}", false, "x}"},
  };
  for (const auto& row : rows) {
    const auto parsed = Json::parse(row.text);
    EXPECT_EQ(static_cast<bool>(parsed.document), row.parsed) << row.text;
    EXPECT_EQ(parsed.errorRest, row.rest) << row.text;
  }
}

TEST(Json, DepthIsBounded) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_TRUE(Json::parse(nested(1000)).document);
  EXPECT_FALSE(Json::parse(nested(1001)).document);
  EXPECT_FALSE(Json::parse(std::string(2000000, '[')).document);
}

TEST(Json, EveryTruncationIsRefusedWithoutHarm) {
  const std::string whole = R"({"Command":"a\u4e2d\ud83d\ude00","Data":{"x":[1,-2.5e3,true,null,{}]}})";
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(Json::parse(whole.substr(0, size)).document) << size;
  }
  EXPECT_TRUE(Json::parse(whole).document);
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

}  // namespace
}  // namespace vernoxa::inline text
