// What a value may not do in a script: asked of a real interpreter, which records every command that it would run.
#include "tcl/script.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "support/hostile_values.h"
#include "support/tcl_interp_tcl.h"
#include "text/text.h"

namespace vernoxa::inline tcl {
namespace {

constexpr unsigned valuesOfEachKind = 10000;

class ScriptTest : public testing::Test {
 protected:
  ScriptTest() {
    interp_.recordEverything();
    interp_.define("target");
    interp_.define("list", [](const Words&) { return Evaluation{true, "inner"}; });
  }

  TclInterp interp_;
  HostileValues values_;
};

TEST_F(ScriptTest, EachPlaceNeutralisesItsOwnCharactersAndNoOthers) {
  EXPECT_EQ(Script("p ").quoted("C:\\\\a b\\\\c.dsn").literal(" ").bare("(1 2)").literal(" ").braced("R1,R2").text(),
            "p \"C:\\\\a b\\\\c.dsn\" (1 2) {R1,R2}");
  EXPECT_EQ(Script("getGuid").quoted("C:\\\\a.dsn").literal(" 1").text(), "getGuid\"C:\\\\a.dsn\" 1");
  // No value makes the name of another command.
  EXPECT_EQ(Script("get").bare("Guid").number(5).text(), "get Guid5");
  EXPECT_EQ(Script("p; q").number(5).text(), "p; q 5");
  EXPECT_EQ(Script("p").braced("a;q").literal(" [x").bare("x").literal("]").text(), "p {a;q} [x x]");
  EXPECT_EQ(Script("p a").bare("b").text(), "p ab");
  EXPECT_EQ(Script("p ").quoted("a").literal(" [list]").bare("b").text(), "p \"a\" [list]b");
  EXPECT_EQ(Script("p").quoted("p; [p]").callInstead("q::r").text(), "q::r\"p\\;\\ \\[p]\"");

  const std::string value = "a\"[$;]{b\n\\";
  EXPECT_EQ(Script("p ").quoted(value).text(), "p \"a\\\"\\[\\$;]{b\n\\\\\"");
  EXPECT_EQ(Script("p ").bare(value).text(), "p a\"\\[\\$\\;]{b\\n\\\\");
  EXPECT_EQ(Script("p ").bare("a\\\nb\\\\\rc").text(), "p a\\nb\\\\\\rc");  // escaped already, and not
  EXPECT_EQ(Script("p ").bare("\n{").text(), "p \\n{");
  EXPECT_EQ(Script("p [list ").bare("a] \"b {c").literal("]").text(), "p [list a\\] \\\"b \\{c]");
  EXPECT_EQ(Script("p [list [list] ").bare("a]").literal("] ").bare("b]").text(), "p [list [list] a\\]] b]");
  EXPECT_EQ(Script("p ").braced("a b}").text(), "p a\\ b}");
  EXPECT_EQ(Script("p ").braced("{a b} {}").text(), "p {{a b} {}}");
  EXPECT_EQ(Script("p ").braced("[x] $y \\}").text(), "p {[x] $y \\}}");
  EXPECT_EQ(Script("p ").braced("*").literal("[list 1 2]").text(), "p *[list 1 2]");
  EXPECT_EQ(Script("p ").bare("a").braced("; q ").quoted("; q").text(), "p a\\;\\ q\\ \"\\;\\ q\"");
  // Behind a value a word goes on.
  EXPECT_EQ(Script("p ").quoted("a").braced("b c").literal(" ").braced("d").braced("e f").text(),
            "p \"a\"b\\ c {d}e\\ f");
  EXPECT_EQ(Script("p ").number(5).braced("a b").text(), "p 5a\\ b");
  EXPECT_EQ(Script("p ").quoted("\\[a\\\\[b").text(), "p \"\\[a\\\\\\[b\"");  // escaped already, and not
}

// A value quoted, braced, or behind the name of a command is one word; there it adds to that name, which names nothing
// then. Bare it is the words between its spaces. Exactly these procedures run, in their order, without an error; the
// first call has these words and in any case ends with the last: backslashes may change the rest.
TEST_F(ScriptTest, AValueIsItsOwnWords) {
  using Form = decltype(&Script::quoted);
  static constexpr struct {
    Start start;
    Form form;
    Literal end;
    std::string_view procedures;
  } rows[] = {
      {"target ", &Script::quoted, " end", "target "},
      {"target ", &Script::braced, " end", "target "},
      {"target [list ", &Script::braced, " end]", "list target "},
      {"target", &Script::quoted, " end", "unknown "},
      {"target ", &Script::bare, " end", "target "},
      {"target [list ", &Script::bare, " end] end", "list target "},
  };
  for (unsigned count = 0; count < valuesOfEachKind * std::size(rows); ++count) {
    const auto& [start, form, end, procedures] = rows[count % std::size(rows)];
    std::string value = values_.next();
    const bool escapes = value.find('\\') != std::string::npos;
    Script script(start);
    (script.*form)(value).literal(end);
    interp_.calls.clear();
    ASSERT_EQ(interp_.evaluate(script.text()).status, 0) << script.text();
    std::string ran;
    for (const Words& call : interp_.calls) {
      ran += call.front() + " ";
    }
    ASSERT_EQ(ran, procedures) << script.text();
    Words words = {procedures == "unknown " ? "target\"" + value + "\"" : value};
    if (form == Form(&Script::bare)) {
      std::ranges::replace_if(
          value, [](char c) { return c == '\t' || c == '\v' || c == '\f'; }, ' ');
      words = splitItems(value, ' ');
    }
    words.insert(words.begin(), interp_.calls[0].front());
    words.emplace_back("end");
    if (escapes) {
      ASSERT_EQ(interp_.calls[0].back(), "end") << script.text();
      ASSERT_LE(interp_.calls[0].size(), words.size()) << script.text();
    } else {
      ASSERT_EQ(interp_.calls[0], words) << script.text();
    }
  }
}

TEST_F(ScriptTest, ValuesBesideEachOtherRunNothing) {
  constexpr std::array forms = {&Script::quoted, &Script::bare, &Script::braced};
  for (unsigned count = 0; count < valuesOfEachKind; ++count) {
    Script script(count % 2 == 0 ? Start("target ") : Start("other\t"));
    for (const unsigned form : {count % 3, count / 3 % 3, count / 9 % 3}) {
      (script.*forms[form])(values_.next());
    }
    interp_.calls.clear();
    interp_.evaluate(script.callInstead("target").text());
    for (const Words& call : interp_.calls) {
      ASSERT_EQ(call.front(), "target") << script.text();
    }
  }
}

}  // namespace
}  // namespace vernoxa::inline tcl
