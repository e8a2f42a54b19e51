#include "tcl/arguments.h"

#include <gmock/gmock.h>
#include <tcl.h>

#include <array>
#include <tuple>

#include "support/tcl_interp_tcl.h"
#include "tcl/tcl_script_host.h"

namespace vernoxa::inline tcl {
namespace {

using testing::ElementsAre;

TEST(TclArguments, NothingIsReadPastWhatCame) {
  const TclWords words({"cmd", "a {b c} {}", std::string("x\xC0\x80y", 4)});
  const Arguments arguments = words.arguments();
  EXPECT_EQ(arguments.count(), 3);
  EXPECT_EQ(arguments.text(0), "cmd");
  EXPECT_EQ(arguments.text(2), std::string_view("x\xC0\x80y", 4));
  for (const int position : {-1, 3, 4, 1000000}) {
    EXPECT_EQ(arguments.text(position), "") << position;
    EXPECT_EQ(arguments.list(position).size(), 0) << position;
  }
  EXPECT_EQ(Arguments(2, words.objects()).text(2), "");
  const TclList list = arguments.list(1);
  EXPECT_EQ(list.size(), 3);
  EXPECT_EQ(list.text(0), "a");
  EXPECT_EQ(list.list(1).text(1), "c");
  EXPECT_EQ(list.list(1).text(2), "");
  EXPECT_EQ(list.text(3), "");
  EXPECT_EQ(list.list(-1).list(7).size(), 0);
}

TEST(TclArguments, AListHoldsItsElementsAndGivesThemBack) {
  const TclWords words({"cmd", "a"});
  const auto elementIsHeld = [&words] {
    Tcl_Obj* element = nullptr;
    Tcl_ListObjIndex(nullptr, words.objects()[1], 0, &element);
    return Tcl_IsShared(element) != 0;
  };
  {
    const TclList list = words.arguments().list(1);
    EXPECT_TRUE(elementIsHeld());
  }
  EXPECT_FALSE(elementIsHeld());
}

// The first texts at once, of a list that is kept and of one that is read in passing.
TEST(TclArguments, TextsAtOnce) {
  const TclWords words({"cmd", "a {b c} {} x\xC0\x80y", "{} {} {} {} d", "", "a {b"});
  const auto texts = [](const auto& list, std::size_t most) {
    std::array<const char*, 4> starts{};
    std::array<std::size_t, 4> sizes{};
    std::string joined;
    for (std::size_t index = 0, count = list.texts(starts.data(), sizes.data(), most); index < count; ++index) {
      joined.append("|").append(starts[index], sizes[index]);
    }
    return joined;
  };
  for (const auto& [position, most, expected] : {std::tuple{1, 4U, "|a|b c||x\xC0\x80y"},
                                                 {1, 2U, "|a|b c"},
                                                 {1, 0U, ""},
                                                 {2, 4U, "||||"},
                                                 {3, 4U, ""},
                                                 {4, 4U, ""},  // malformed
                                                 {5, 4U, ""}}) {
    EXPECT_EQ(texts(words.arguments().list(position), most), expected) << position;
    EXPECT_EQ(texts(words.arguments().passingList(position), most), expected) << position;
  }
  EXPECT_EQ(words.arguments().list(4).size(), 0);
  EXPECT_EQ(words.arguments().text(4), "a {b");
}

class TclScriptHostTest : public testing::Test {
 protected:
  TclInterp interp_;
  TclScriptHost host_{interp_.get()};
};

TEST_F(TclScriptHostTest, AnswersWhatTclSays) {
  const auto answer = [&](Start script) {
    const Evaluation result = host_.evaluate(Script(script));
    return std::string(result.ok ? "ok " : "error ") + result.text;
  };
  EXPECT_EQ(answer("set a {x y}"), "ok x y");
  EXPECT_EQ(answer("error \xD6\xD0"), "error \xD6\xD0");
  EXPECT_EQ(answer("return -code 7 odd"), "error command returned bad code: 7");
  EXPECT_EQ(answer("set a {}x"), "error extra characters after close-brace");
  EXPECT_EQ(answer("list"), "ok ");
}

TEST_F(TclScriptHostTest, SplitsLists) {
  EXPECT_THAT(host_.splitList("a {b c} {} \"d\\n\"").value(), ElementsAre("a", "b c", "", "d\n"));
  EXPECT_THAT(host_.splitList("").value(), ElementsAre());
  EXPECT_FALSE(host_.splitList("a {b"));
  EXPECT_EQ(host_.evaluate(Script("set ::errorInfo")).text.find("unmatched"), std::string::npos);
}

TEST_F(TclScriptHostTest, OutlivesItsInterpreter) {
  interp_.define("suicide", [this](const Words&) {
    Tcl_DeleteInterp(interp_.get());
    return Evaluation{true, "last words"};
  });
  host_.evaluate(Script("suicide"));
  EXPECT_FALSE(host_.evaluate(Script("set a 1")).ok);
  EXPECT_THAT(host_.splitList("a b").value(), ElementsAre("a", "b"));
}

TEST_F(TclScriptHostTest, SeparatedFormIsTriedOnlyAfterAnError) {
  interp_.define("getGuid", "separate");
  EXPECT_EQ(host_.evaluateJoined(Script("getGuid\"a\" 1"), Script("getGuid \"a\" 1")).text, "separate");
  interp_.define("getGuid\"a\"", "joined");
  EXPECT_EQ(host_.evaluateJoined(Script("getGuid\"a\" 1"), Script("getGuid \"a\" 1")).text, "joined");
  EXPECT_EQ(host_.evaluateJoined("getGuid", "a", " 1").text, "joined");
  EXPECT_EQ(host_.evaluateJoined("getGuid", "a b").text, "separate");
  EXPECT_FALSE(host_.evaluateJoined(Script("getGuid\"b\" 1"), Script("nobody")).ok);
  EXPECT_THAT(interp_.calls, ElementsAre(Words{"getGuid", "a", "1"}, Words{"getGuid\"a\"", "1"},
                                         Words{"getGuid\"a\"", "1"}, Words{"getGuid", "a b"}));
}

TEST_F(TclScriptHostTest, TwoVersionsAreOld) {
  EXPECT_FALSE(host_.isOldHost());
  for (const auto& [version, old] : {std::pair{"16.3", true}, {"16.5", true}, {"16.6", false}, {"16.30", false}}) {
    interp_.define("GetProductVersion", version);
    EXPECT_EQ(host_.isOldHost(), old) << version;
  }
}

}  // namespace
}  // namespace vernoxa::inline tcl
