#include "text/text.h"

#include <filesystem>

#include "support/session_test.h"
#include "text/file_name_escaping.h"

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
  expect({"", "ab\x7F", "\xC2\x80", "\xDF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}, true, false);
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
      {high + low.substr(0, 2), std::nullopt},
      {"ab" + nul + "\xFF", std::nullopt},  // not Tcl's: what looks like a NUL is a character of the code page
      {"\xED\xB0\x80" + low, lost + lost},  // the first one that comes second in a pair
      {"\xED\xC0\x80", std::nullopt},
      {"\xED\xA0x", std::nullopt},
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
      {"a", {"a"}, {"a"}},
      {"a;b;", {"a", "b", ""}, {"a", "b"}},
      {";a;;b", {"", "a", "", "b"}, {"a", "b"}},
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

class TextConverterTest : public SessionTest {};

TEST_F(TextConverterTest, ConvertsBothWays) {
  EXPECT_EQ(text.ansiToUtf8(u8"原理图 R1"_gbk), utf8(u8"原理图 R1"));
  EXPECT_EQ(text.utf8ToAnsi(utf8(u8"原理图 R1")), u8"原理图 R1"_gbk);
  EXPECT_EQ(text.utf8ToAnsi(utf8(u8"a\U0001F600")).front(), 'a');
  const std::string pair = "\xED\xA0\xBD\xED\xB8\x80";  // the same character as Tcl holds it
  EXPECT_EQ(text.utf8ToAnsi("a" + pair), text.utf8ToAnsi(utf8(u8"a\U0001F600")));
  EXPECT_EQ(text.utf8ToAnsi(utf8(u8"图") + pair.substr(0, 3) + utf8(u8"图")), u8"图?图"_gbk);  // half a pair
  EXPECT_EQ(text.utf8ToAnsi(utf8(u8"图") + std::string(tclNul) + "x"), u8"图"_gbk);
  EXPECT_EQ(text.utf8ToAnsi(u8"原理图"_gbk), u8"原理图"_gbk);  // no UTF-8: in the code page already
  EXPECT_EQ(text.ansiToUtf8(std::string(u8"中\0文"_gbk, 5)), utf8(u8"中"));
  EXPECT_EQ(text.utf8ToAnsi(std::string("ab\0c", 4)), "ab");
}

TEST_F(TextConverterTest, CharactersOfOwnTextsHaveTheBytesOfTheCodePage) {
  for (const GbkRow& row : gbkRows) {
    EXPECT_EQ(text.utf8ToAnsi(utf8(std::filesystem::path(row.characters).u8string())), row.bytes);
  }
  EXPECT_EQ(sizeof u8"é号1"_gbk, 6U);
  // Neither cut nor broken, and no character of four bytes: what is not read stays.
  EXPECT_EQ(std::string(u8"\xD6x\xE5\xC1\xF0\x9F\x98\x80\xE5"_gbk), "\xD6x\xE5\xC1\xF0\x9F\x98\x80\xE5");
}

TEST_F(TextConverterTest, EachRoadHasItsOwnTest) {
  // A text, then what becomes of it in a message to the companion, in a script for the host and as a path.
  const std::array<std::string, 4> rows[] = {
      {"R1", "R1", "R1", "R1"},
      {utf8(u8"中文"), u8"中文"_gbk, utf8(u8"中文"), utf8(u8"中文")},
      {utf8(u8"中"), utf8(u8"中"), utf8(u8"中"), utf8(u8"中")},  // too short to look like UTF-8
      {u8"理"_gbk, u8"理"_gbk, utf8(u8"理"), utf8(u8"理")},
      // Two bytes that are one character of either encoding: only a path from the host stays as it is.
      {"\xC2\xB5", "\xC2\xB5", utf8(u8"碌"), "\xC2\xB5"},
  };
  for (const auto& [given, message, script, path] : rows) {
    EXPECT_EQ(text.messageText(given), message) << given;
    EXPECT_EQ(text.scriptValue(given), script) << given;
    EXPECT_EQ(text.hostPath(given), path) << given;
  }
}

// 0x5C, the backslash, is a second byte of many characters of the code page.
TEST_F(TextConverterTest, SecondBytesAreNoCharactersOfTheirOwn) {
  EXPECT_EQ(text.replaceInCodePage("\xD5\x5C\\\xD5\x5C", '\\', "[b]"), "\xD5\x5C[b]\xD5\x5C");
  EXPECT_EQ(text.replaceInCodePage("a\\\xD5", '\\', "/"), "a/\xD5");
}

TEST_F(TextConverterTest, FailureIsShownAndGivesNoText) {
  fake.codePage.throwing = true;
  EXPECT_EQ(text.ansiToUtf8(u8"图"_gbk), "");
  EXPECT_EQ(text.ansiToUtf8("ASCII needs no conversion"), "ASCII needs no conversion");
  EXPECT_THAT(fake.messages.shown(), testing::ElementsAre(u8"GBK格式异常"_gbk));
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
  for (const char* const name : {"COM0.json", "COM10.json", "CONE.json", "CONx.json", "CON@!@P.json", "ACON",
                                 "LPT.json", "COMX", "~.json", "CO", ""}) {
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
