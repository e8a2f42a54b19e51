#include "text/text_converter.h"

#include <filesystem>

#include "support/session_test.h"

namespace vernoxa::inline text {
namespace {

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
  EXPECT_EQ(text.ansiToUtf8(""), "");
}

TEST_F(TextConverterTest, CharactersOfOwnTextsHaveTheBytesOfTheCodePage) {
  for (const GbkRow& row : gbkRows) {
    EXPECT_EQ(text.utf8ToAnsi(utf8(std::filesystem::path(row.characters).u8string())), row.bytes);
  }
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
      {"", "", "", ""},
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
  EXPECT_EQ(text.replaceInCodePage("\x80\\", '\\', "/"), "\x80/");
  EXPECT_EQ(text.replaceInCodePage("\xFF\\", '\\', "/"), "\xFF/");
}

TEST_F(TextConverterTest, FailureIsShownAndGivesNoText) {
  fake.codePage.throwing = true;
  EXPECT_EQ(text.ansiToUtf8(u8"图"_gbk), "");
  EXPECT_EQ(text.ansiToUtf8("ASCII needs no conversion"), "ASCII needs no conversion");
  EXPECT_THAT(fake.messages.shown(), testing::ElementsAre(u8"GBK格式异常"_gbk));
}

}  // namespace
}  // namespace vernoxa::inline text
