// What steps over double-byte characters and what becomes a name, in the code pages that systems have.
#include "checks/check_message.h"
#include "drawing/drawn.h"
#include "drawing/graphic_library.h"
#include "drawing/page_export.h"
#include "link/file_status.h"
#include "modules/placement.h"
#include "support/session_test.h"
#include "text/message_paths.h"

namespace vernoxa::inline text {
namespace {

using testing::HasSubstr;

class EveryCodePage : public SessionTest, public testing::WithParamInterface<unsigned> {
 protected:
  EveryCodePage() {
    fake.codePage = FakeCodePage(GetParam());
    enableTraffic();
  }
  static FilePath told(std::u8string_view path) { return FilePath::fromUtf8(utf8(path)); }
  // The reply to a message of the companion.
  std::string tell(std::u8string_view message) { return replyTo(plugin::companionEndpoint(), utf8(message), host_); }
};

INSTANTIATE_TEST_SUITE_P(Pages, EveryCodePage, testing::Values(936U, 950U, 932U, 1252U, 65001U));

// Of each page a character whose last byte is that of a backslash, or one that is a lead byte in other pages.
TEST_P(EveryCodePage, ABackslashIsNeverHalfACharacter) {
  const std::map<unsigned, std::u8string> characters = {
      {936, u8"昞"}, {950, u8"功"}, {932, u8"表"}, {1252, u8"é"}, {65001, u8"測"}};
  const std::string character = utf8(characters.at(GetParam()));
  const std::string name = fake.codePage.fromUtf8(character);
  EXPECT_EQ(text.ansiToUtf8(text.replaceInCodePage(name + "\\" + name + "|" + name + "\\", '\\', "/")),
            character + "/" + character + "|" + character + "/");
  EXPECT_EQ(text.doubledBackslashes(name + "\\x"), name + "\\\\x");
  EXPECT_EQ(text.doubledBackslashes(utf8(u8"測\\x")), utf8(u8"測\\\\x"));
  const std::string page = name + "\\|";
  const auto message = checks::findingMessage(checks::netlistCheck, {"NoFootprint", "R1", "", "", page, "", ""}, text);
  EXPECT_THAT(message.value_or(""), HasSubstr("\"PageName\":\"" + name + "[;fanxiegan;]|\""));
}

TEST_P(EveryCodePage, ANameIsItselfOrNone) {
  const std::pair<std::u8string_view, std::set<unsigned>> rows[] = {
      {u8"PA", {936, 950, 932, 1252, 65001}},
      {u8"P\uFF21", {936, 950, 932, 65001}},  // looks like the one before
      {u8"P\u00E9", {936, 1252, 65001}},
      {u8"測試", {936, 950, 932, 65001}},
      {u8"P한", {65001}},
      {u8"P\U0001F600", {65001}},
  };
  for (const auto& [path, pages] : rows) {
    const auto name = text.nameInCodePage(told(path));
    EXPECT_EQ(name.has_value(), pages.contains(GetParam())) << utf8(path);
    EXPECT_EQ(name ? text.path(*name).utf8() : utf8(path), utf8(path));
  }
}

// Beside each other, in a folder that hardly any page can name and that was told in UTF-8.
TEST_P(EveryCodePage, FilesHaveTheirTrueNames) {
  const FilePath folder = told(u8"E:\\測한");
  fake.files.addFolder(folder);
  ASSERT_EQ(tell(u8R"({"Command":"FileStatus_EndResult","Data":{"Path":"E:\\測한"}})"), "");
  auto& pages = part<drawing::PageExport>();
  pages.start();
  for (const char8_t* const name : {u8"PA", u8"P\uFF21", u8"P\u00E9", u8"Pe", u8"é\\é|é/", u8"last"}) {
    const std::string given = "Page;" + utf8(name) + ";1;1;";
    drawing::WordRecord record(given);
    record.showInCodePage(text, true);
    pages.addRecord(drawing::Use::page, record, drawing::WordRecord(given));
  }
  pages.finish({"", utf8(u8"測한"), ""});
  EXPECT_EQ(fake.files.entries(folder / "Cache" / "Output").size(), 6U);
  EXPECT_TRUE(fake.files.exists(told(u8"E:\\測한\\Cache\\Output\\@!@é[;fanxiegan;]é[;shugan;]é[;xiegan;]@!@.json")));

  auto& library = part<drawing::GraphicLibrary>();
  library.start();
  EXPECT_EQ(library.finish(utf8(u8"測é/한")), utf8(u8"E:/測한/Cache/Library/測é-한.json"));
  EXPECT_TRUE(fake.files.exists(told(u8"E:\\測한\\Cache\\Library\\測é-한.json")));

  host_.during = [&](const std::string&) { fake.files.addFile(told(u8"E:\\測한\\Cache\\Nets.txt"), "nets"); };
  const std::string reply =
      replyTo(plugin::linkEndpoint(), R"({"Command":"GetNetsList","Data":{"ProjectPath":"a.dsn"}})", host_);
  EXPECT_THAT(reply, HasSubstr("\"netlistsFile\":\"" + utf8(u8"E:\\\\測한\\\\Cache\\\\Nets.txt")));
  EXPECT_EQ(host_.scripts.back(), utf8(u8"GetNetsList \"a.dsn\" \"E:\\\\測한\\\\Cache\\\\Nets.txt\""));
}

// Told in the code page where that has the name, and in UTF-8.
TEST_P(EveryCodePage, LibrariesLieBesideTheirModule) {
  const FilePath folder = told(u8"D:\\測試");
  fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
  fake.files.addFile(folder / "m.json", R"({"lib":[{"Name":"RES"}]})");
  for (const std::string& path : {part<MessagePaths>().of(folder / "m.json"), (folder / "m.json").utf8()}) {
    placement.dsnDatPath = path;
    fake.random.numbers = {5, 6};
    host_.scripts.clear();
    EXPECT_TRUE(part<modules::ModulePlacer>().placeLibrary(host_, modules::DraggedBox::none).made);
    EXPECT_THAT(host_.scripts.front(), testing::StartsWith(utf8(u8"placeLibPart D:/測試/5.olb {RES}")));
    EXPECT_TRUE(fake.files.removeFile(folder / "6.olb"));
  }
}

TEST_P(EveryCodePage, APathIsToldByANameThatOpensIt) {
  const FilePath korean = told(u8"E:\\한\\a.dsn");
  fake.files.addFile(korean, "");
  EXPECT_EQ(part<MessagePaths>().of(korean), korean.utf8());  // readers tell it by its three-byte sequences
  fake.files.shortPaths[korean] = pathOf("E:\\6B12~1\\a.dsn");
  EXPECT_EQ(part<MessagePaths>().of(korean), GetParam() == 65001 ? korean.utf8() : "E:\\6B12~1\\a.dsn");

  const FilePath cyrillic = told(u8"E:\\\u0452");
  EXPECT_EQ(part<MessagePaths>().of(cyrillic), GetParam() == 65001 ? cyrillic.utf8() : "");
  EXPECT_EQ(traffic(), GetParam() == 65001 ? "" : "no name in the code page: E:\\?");
}

// Hardly any of these pages names the first three designs, nor the fourth, which has a short name. The third is a
// character that Tcl holds as two surrogates.
TEST_P(EveryCodePage, ADesignWithoutANameHoldsNoOtherUp) {
  const bool all = GetParam() == 65001;
  const std::vector<std::string> nameless = {utf8(u8"D:\\測한.dsn"), utf8(u8"D:\\한.dsn"),
                                             "D:\\\xED\xA0\xBD\xED\xB8\x80.dsn"};
  const std::string shortened = utf8(u8"D:\\漢한.dsn");
  const FilePath withShortName = FilePath::fromUtf8(shortened);
  fake.files.addFile(FilePath::fromUtf8(nameless.front()), "");
  fake.files.addFile(withShortName, "");
  fake.files.shortPaths[withShortName] = pathOf("D:\\6F22~1.DSN");
  host_.answer("InitPath", nameless[0] + ";" + nameless[1] + ";" + nameless[2] + ";" + shortened + ";D:\\b.dsn");
  std::vector<std::string> reported;
  for (int poll = 0; poll < 6; ++poll) {
    const Json parsed = Json::parse(replyTo(plugin::linkEndpoint(), R"({"Command":"GetNewOpenPath"})", host_)).document;
    if (const auto path = parsed.member("Data").member("ProjectPath").text()) {
      reported.push_back(part<MessagePaths>().ofDesign(*path));
      replyTo(plugin::linkEndpoint(), part<const link::FileStatus>().opened(*path, "1").printUnformatted(), host_);
    }
  }
  EXPECT_EQ(reported, all ? std::vector<std::string>(
                                {nameless[0], nameless[1], utf8(u8"D:\\\U0001F600.dsn"), shortened, "D:\\b.dsn"})
                          : std::vector<std::string>({"D:\\6F22~1.DSN", "D:\\b.dsn"}));
  EXPECT_EQ(part<MessagePaths>().ofDesign("D:\\\xD1\x92"), "D:\\\xD1\x92");  // in UTF-8 or in the code page
  fake.files.removeFile(withShortName);  // as its name in messages, it outlives the file
  EXPECT_EQ(part<MessagePaths>().ofDesign(shortened), all ? shortened : "D:\\6F22~1.DSN");
  const std::string refusal = "not reported, no name in the code page: D:";
  EXPECT_EQ(traffic().size() - replaceAll(traffic(), refusal, "").size(), all ? 0 : 3 * refusal.size());
}

}  // namespace
}  // namespace vernoxa::inline text
