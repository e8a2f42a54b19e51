#include "text/text.h"

#include <gtest/gtest.h>

#include "system/fake_world.h"
#include "text/file_name_escaping.h"
#include "text/gbk_literal.h"

namespace vernoxa::inline text {
namespace {

TEST(Text, LooksLikeUtf8ChineseByItsFirstCandidateAlone) {
  for (const char* const text :
       {"\xE4\xB8\xAD\x61", "x\xE4\xB8\xAD\xE6\x96\x87", "\xE4\x80\x80\x61", "\xE9\xBF\xBF\x61"}) {
    EXPECT_TRUE(looksLikeUtf8Chinese(text)) << text;
  }
  // The first three end with or before their only character; in the last but one later characters do not count.
  for (const char* const text :
       {"\xE4\xB8\xAD", "\xE4", "\xE4\xB8", "", "abc", "\xE3\xB8\xAD\x61", "\xEA\xB8\xAD\x61", "\xE4\x7F\xAD\x61",
        "\xE4\xC0\xAD\x61", "\xE4\xB8\x7F\x61", "\xE4\xB8\xC0\x61", "\xE4zz\xE4\xB8\xAD\xE6\x96\x87", u8"中文"_gbk}) {
    EXPECT_FALSE(looksLikeUtf8Chinese(text)) << text;
  }
}

TEST(Text, NonAscii) {
  EXPECT_TRUE(hasNonAscii(""));
  EXPECT_FALSE(hasNonAscii("R1_\x7F"));
  EXPECT_TRUE(hasNonAscii("R\x80"));
}

TEST(Text, Utf8IsWellFormedOrNot) {
  const auto expect = [](std::initializer_list<const char*> texts, bool valid, bool threeBytes) {
    for (const char* const text : texts) {
      EXPECT_EQ(isValidUtf8(text), valid) << text;
      EXPECT_EQ(isUtf8WithThreeByteSequence(text), threeBytes) << text;
    }
  };
  expect({"", "abc", "\xC2\x80", "\xDF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}, true, false);
  expect({"\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x9F\x98\x80\xE4\xB8\xAD"}, true, true);
  // Overlong ones, a surrogate, beyond the last character, cut, broken; in the last one bad byte spoils all.
  expect(
      {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80",
       "\xF5\x80\x80\x80", "\xFF", "\xC2", "\xC2\x61", "\xE4\xB8", "\xE4\xB8\x61", "\xF0\x9F\x98", "\xE4\xB8\xAD\xD6"},
      false, false);
}

TEST(Text, OfTclBecomesPlainUtf8) {
  const std::string high = "\xED\xA0\xBD";
  const std::string low = "\xED\xB8\x80";
  const std::string lost = utf8(u8"\uFFFD");
  const std::string nul(tclNul);
  const std::pair<std::string, std::optional<std::string>> rows[] = {
      {"", ""},
      {utf8(u8"a图\U0001F600"), utf8(u8"a图\U0001F600")},
      {"a" + high + low + high + low + "b", utf8(u8"a\U0001F600\U0001F600b")},
      {"\xED\xA0\x80\xED\xB0\x80\xED\xAF\xBF\xED\xBF\xBF", utf8(u8"\U00010000\U0010FFFF")},
      {high, lost},
      {low + high, lost + lost},
      {high + high + low, lost + utf8(u8"\U0001F600")},
      {high + "\xED\xAF\xBF", lost + lost},  // the last one that comes first in a pair
      {high + "x", lost + "x"},
      {"\xED\x9F\xBF", "\xED\x9F\xBF"},  // the last character before the surrogates
      {"ab" + nul + "c" + nul, "ab"},
      {nul, ""},
      {high + low.substr(0, 2), std::nullopt},
      {"ab" + nul + "\xFF", std::nullopt},  // not Tcl's: what looks like a NUL is a character of the code page
      {"\xC0\x81", std::nullopt},
      {u8"中文"_gbk, std::nullopt},
  };
  for (const auto& [text, plain] : rows) {
    EXPECT_EQ(utf8OfTcl(text), plain) << text;
  }
}

TEST(Text, SplitsIntoFieldsAndItems) {
  using Texts = std::vector<std::string>;
  const std::tuple<std::string_view, Texts, Texts> rows[] = {
      {"", {""}, {}},
      {";", {"", ""}, {}},
      {"a;b;", {"a", "b", ""}, {"a", "b"}},
      {";a;;b", {"", "a", "", "b"}, {"a", "b"}},
      {"a", {"a"}, {"a"}},
  };
  for (const auto& [text, fields, items] : rows) {
    EXPECT_EQ(splitFields(text, ';'), fields) << text;
    EXPECT_EQ(splitItems(text, ';'), items) << text;
  }
}

TEST(Text, ReplacesWithoutReadingWhatItInserted) {
  EXPECT_EQ(replaceAll("aXbXX", "X", "XX"), "aXXbXXXX");
  EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(doubleBackslashes("C:\\a\\\\b"), "C:\\\\a\\\\\\\\b");
}

TEST(FileNameEscaping, ReplacesWhatWindowsForbids) {
  EXPECT_EQ(escapedFileName(R"(a\/:*?"<>|[;x;].json)"),
            "a[;fanxiegan;][;xiegan;][;maohao;][;xinghao;][;wenhao;][;yinhao;][;xiaoyuhao;][;dayuhao;][;shugan;]"
            "[;x;].json");
}

TEST(FileNameEscaping, NoNameIsADeviceOrAnotherNameOfAFile) {
  for (const std::string name : {"CON.json", "nul", "aux", "Aux.b.json", "PRN .json", "com1.json", "LPT9"}) {
    EXPECT_EQ(plainFileName(name), "_" + name);
  }
  for (const char* const name :
       {"COM0.json", "COM10.json", "CONE.json", "CON@!@P.json", "ACON", "LPT.json", "COMX", "~.json", "CO", ""}) {
    EXPECT_EQ(plainFileName(name), name);
  }
  EXPECT_EQ(plainFileName("a:b.json"), "a-b.json");
  EXPECT_EQ(plainFileName("CON:.json"), "_CON-.json");
}

TEST(Identifiers, GuidTextHasItsThirdGroupInLowerCase) {
  FakeGuidSource source;
  source.next = Guid{0xABCDEF, 0xAB, 0xFE, {0, 1, 2, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE}};
  EXPECT_EQ(guidText(source), "00ABCDEF-00AB-00fe-0001-02AABBCCDDEE");
  source.next.reset();
  EXPECT_EQ(guidText(source), "");
}

}  // namespace
}  // namespace vernoxa::inline text
