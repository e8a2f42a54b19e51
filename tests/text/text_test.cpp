#include "text/text.h"

#include <gtest/gtest.h>

#include "plugin/installation.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"

namespace vernoxa::inline text {
namespace {

TEST(Text, LooksLikeUtf8ChineseByItsFirstCandidateAlone) {
  const struct {
    std::string_view text;
    bool expected;
  } rows[] = {
      {"", false},
      {"abc", false},
      {"\xE4\xB8\xAD", false},  // ends with its only character
      {"\xE4\xB8\xAD"
       "a",
       true},
      {"x\xE4\xB8\xAD\xE6\x96\x87", true},
      {"\xE4\x80\x80"
       "a",
       true},
      {"\xE9\xBF\xBF"
       "a",
       true},
      {"\xE3\xB8\xAD"
       "a",
       false},
      {"\xEA\xB8\xAD"
       "a",
       false},
      {"\xE4\x7F\xAD"
       "a",
       false},
      {"\xE4\xC0\xAD"
       "a",
       false},
      {"\xE4\xB8\x7F"
       "a",
       false},
      {"\xE4\xB8\xC0"
       "a",
       false},
      {"\xE4zz\xE4\xB8\xAD\xE6\x96\x87", false},  // later characters do not count
      {"\xE4", false},
      {"\xE4\xB8", false},
      {u8"中文"_gbk, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(looksLikeUtf8Chinese(row.text), row.expected) << row.text;
  }
}

TEST(Text, NonAscii) {
  EXPECT_TRUE(hasNonAscii(""));
  EXPECT_FALSE(hasNonAscii("R1_\x7F"));
  EXPECT_TRUE(hasNonAscii("R\x80"));
}

TEST(Text, Utf8IsWellFormedOrNot) {
  const struct {
    std::string_view text;
    bool valid;
    bool threeBytes;
  } rows[] = {
      {"", true, false},
      {"abc", true, false},
      {"\xC2\x80", true, false},
      {"\xDF\xBF", true, false},
      {"\xE0\xA0\x80", true, true},
      {"\xED\x9F\xBF", true, true},
      {"\xEE\x80\x80", true, true},
      {"\xEF\xBF\xBF", true, true},
      {"\xF0\x90\x80\x80", true, false},
      {"\xF4\x8F\xBF\xBF", true, false},
      {"\xF0\x9F\x98\x80\xE4\xB8\xAD", true, true},
      {"\x80", false, false},
      {"\xC0\x80", false, false},  // overlong
      {"\xC1\xBF", false, false},
      {"\xE0\x9F\xBF", false, false},
      {"\xF0\x8F\xBF\xBF", false, false},
      {"\xED\xA0\x80", false, false},  // surrogate
      {"\xF4\x90\x80\x80", false, false},
      {"\xF5\x80\x80\x80", false, false},
      {"\xFF", false, false},
      {"\xC2", false, false},
      {"\xC2"
       "a",
       false, false},
      {"\xE4\xB8", false, false},
      {"\xE4\xB8"
       "a",
       false, false},
      {"\xF0\x9F\x98", false, false},
      {"\xE4\xB8\xAD\xD6", false, false},  // one bad byte spoils all
  };
  for (const auto& row : rows) {
    EXPECT_EQ(isValidUtf8(row.text), row.valid) << row.text;
    EXPECT_EQ(isUtf8WithThreeByteSequence(row.text), row.threeBytes) << row.text;
  }
}

TEST(Text, OfTclBecomesPlainUtf8) {
  const std::string high = "\xED\xA0\xBD";
  const std::string low = "\xED\xB8\x80";
  const std::string lost = utf8(u8"\uFFFD");
  const std::string nul(tclNul);
  const struct {
    std::string text;
    std::optional<std::string> plain;
  } rows[] = {
      {"", ""},
      {utf8(u8"a图\U0001F600"), utf8(u8"a图\U0001F600")},
      {"a" + high + low + high + low + "b", utf8(u8"a\U0001F600\U0001F600b")},
      {"\xED\xA0\x80\xED\xB0\x80\xED\xAF\xBF\xED\xBF\xBF", utf8(u8"\U00010000\U0010FFFF")},
      {high, lost},
      {low + high, lost + lost},
      {high + high + low, lost + utf8(u8"\U0001F600")},
      {high + "x", lost + "x"},
      {"\xED\x9F\xBF", "\xED\x9F\xBF"},  // the last character before the surrogates
      {"ab" + nul + "c" + nul, "ab"},
      {nul, ""},
      {high + low.substr(0, 2), std::nullopt},
      {"ab" + nul + "\xFF", std::nullopt},  // not Tcl's: what looks like a NUL is a character of the code page
      {"\xC0\x81", std::nullopt},
      {u8"中文"_gbk, std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(utf8OfTcl(row.text), row.plain) << row.text;
  }
}

TEST(Text, SplitsIntoFieldsAndItems) {
  const struct {
    std::string_view text;
    std::vector<std::string> fields;
    std::vector<std::string> items;
  } rows[] = {
      {"", {""}, {}},
      {";", {"", ""}, {}},
      {"a;b;", {"a", "b", ""}, {"a", "b"}},
      {";a;;b", {"", "a", "", "b"}, {"a", "b"}},
      {"a", {"a"}, {"a"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(splitFields(row.text, ';'), row.fields) << row.text;
    EXPECT_EQ(splitItems(row.text, ';'), row.items) << row.text;
  }
}

TEST(Text, ReplacesWithoutReadingWhatItInserted) {
  EXPECT_EQ(replaceAll("aXbXX", "X", "XX"), "aXXbXXXX");
  EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(doubleBackslashes("C:\\a\\\\b"), "C:\\\\a\\\\\\\\b");
}

TEST(Text, ExtensionIsWhatFollowsTheLastDot) {
  EXPECT_EQ(extensionOf("C:\\a.b\\c.dsn"), "dsn");
  EXPECT_EQ(extensionOf("a."), "");
  EXPECT_EQ(extensionOf("a"), std::nullopt);
}

TEST(Directories, FollowTheModulePath) {
  const plugin::Directories found = plugin::directoriesOf(pathOf("D:\\\xD5\x5C tools\\bin\\Vernoxa64.dll"));
  EXPECT_EQ(found.pluginFolder, pathOf("D:\\\xD5\x5C tools\\bin"));
  EXPECT_EQ(found.baseDirectory, pathOf("D:\\\xD5\x5C tools"));
  EXPECT_EQ(found.logDirectory, pathOf("D:\\\xD5\x5C tools\\Script\\Log"));
  EXPECT_EQ(found.configurationFile, pathOf("D:\\\xD5\x5C tools\\Config\\App.txt"));
  EXPECT_EQ(plugin::directoriesOf(pathOf("Vernoxa64.dll")).baseDirectory, pathOf("Vernoxa64.dll"));
}

TEST(Identifiers, GuidTextHasItsThirdGroupInLowerCase) {
  FakeGuidSource source;
  EXPECT_EQ(guidText(source), "1B4E28BA-2FA1-11d2-883F-0016D3CCA427");
  source.next = Guid{0xABCDEF, 0xAB, 0xFE, {0, 1, 2, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE}};
  EXPECT_EQ(guidText(source), "00ABCDEF-00AB-00fe-0001-02AABBCCDDEE");
  source.next.reset();
  EXPECT_EQ(guidText(source), "");
}

}  // namespace
}  // namespace vernoxa::inline text
