// What a value may not do in a script: asked of a real interpreter, which records every command that it would run.
#include "tcl/script.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "support/hostile_values.h"
#include "support/tcl_interp_tcl.h"

namespace vernoxa::inline tcl {
namespace {

constexpr unsigned valuesOfEachKind = 10000;

// The words that spaces make of a value, between that one and "end".
Words spaceSeparated(const char* first, const std::string& value) {
  Words words{first};
  bool inside = false;
  for (const char c : value) {
    const bool space = c == ' ' || c == '\t' || c == '\v' || c == '\f';
    if (!space && !inside) {
      words.emplace_back();
    }
    inside = !space;
    if (inside) {
      words.back().push_back(c);
    }
  }
  words.emplace_back("end");
  return words;
}

class ScriptTest : public testing::Test {
 protected:
  ScriptTest() {
    interp_.recordEverything();
    interp_.define("target");
    interp_.define("list", [](const Words&) { return Evaluation{true, "inner"}; });
  }

  // What a script for a value runs, for many values: exactly these procedures, in their order, without an error. Its
  // first call has the words that `expected` gives and in any case ends with the last; backslashes may change the rest.
  void tryValues(const std::function<Script(const std::string& value)>& write, const Words& procedures,
                 const std::function<Words(const std::string& value)>& expected) {
    for (unsigned count = 0; count < valuesOfEachKind; ++count) {
      const std::string value = values_.next();
      const std::string script = write(value).text();
      interp_.calls.clear();
      ASSERT_EQ(interp_.evaluate(script).status, 0) << script;
      Words ran;
      for (const Words& call : interp_.calls) {
        ran.push_back(call.front());
      }
      ASSERT_EQ(ran, procedures) << script;
      const Words words = expected(value);
      if (value.find('\\') == std::string::npos) {
        ASSERT_EQ(interp_.calls[0], words) << script;
      } else {
        ASSERT_EQ(interp_.calls[0].back(), "end") << script;
        ASSERT_LE(interp_.calls[0].size(), words.size()) << script;
      }
    }
  }

  TclInterp interp_;
  HostileValues values_;
};

TEST_F(ScriptTest, OrdinaryValuesKeepTheirText) {
  EXPECT_EQ(Script("p ").quoted("C:\\\\a b\\\\c.dsn").literal(" ").bare("(1 2)").literal(" ").braced("R1,R2").text(),
            "p \"C:\\\\a b\\\\c.dsn\" (1 2) {R1,R2}");
  EXPECT_EQ(Script("getGuid").quoted("C:\\\\a.dsn").literal(" 1").text(), "getGuid\"C:\\\\a.dsn\" 1");
}

TEST_F(ScriptTest, NoValueMakesTheNameOfAnotherCommand) {
  EXPECT_EQ(Script("get").bare("Guid").number(5).text(), "get Guid5");
  EXPECT_EQ(Script("p; q").number(5).text(), "p; q 5");
  EXPECT_EQ(Script("p").braced("a;q").literal(" [list").bare("x").literal("]").text(), "p {a;q} [list x]");
  EXPECT_EQ(Script("p ").quoted("a").literal(" [list]").bare("b").text(), "p \"a\" [list]b");
  EXPECT_EQ(Script("p").quoted("p; [p]").callInstead("q::r").text(), "q::r\"p\\;\\ \\[p]\"");
}

TEST_F(ScriptTest, EachPlaceNeutralisesItsOwnCharacters) {
  const std::string value = "a\"[$;]{b\n\\";
  EXPECT_EQ(Script("p ").quoted(value).text(), "p \"a\\\"\\[\\$;]{b\n\\\\\"");
  EXPECT_EQ(Script("p ").bare(value).text(), "p a\"\\[\\$\\;]{b\\n\\\\");
  EXPECT_EQ(Script("p ").bare("a\\\nb\\\\\rc").text(), "p a\\nb\\\\\\rc");  // escaped already, and not
  EXPECT_EQ(Script("p [list ").bare("a] \"b {c").literal("]").text(), "p [list a\\] \\\"b \\{c]");
  EXPECT_EQ(Script("p [list [list] ").bare("a]").literal("] ").bare("b]").text(), "p [list [list] a\\]] b]");
  EXPECT_EQ(Script("p ").braced("a b}").text(), "p a\\ b}");
  EXPECT_EQ(Script("p ").braced("{a b} {}").text(), "p {{a b} {}}");
  EXPECT_EQ(Script("p ").braced("[x] $y \\}").text(), "p {[x] $y \\}}");
  EXPECT_EQ(Script("p ").braced("*").literal("[list 1 2]").text(), "p *[list 1 2]");
  EXPECT_EQ(Script("p ").bare("a").braced("; q ").quoted("; q").text(), "p a\\;\\ q\\ \"\\;\\ q\"");
  EXPECT_EQ(Script("p ").quoted("\\[a\\\\[b").text(), "p \"\\[a\\\\\\[b\"");  // escaped already, and not
}

// Quoted, braced, or behind the name of a command, where it adds to that one word, which names nothing else then.
TEST_F(ScriptTest, AValueIsOneWord) {
  const auto alone = [](const std::string& value) { return Words{"target", value, "end"}; };
  const auto inList = [](const std::string& value) { return Words{"list", value, "end"}; };
  const auto joined = [](const std::string& value) { return Words{"unknown", "target\"" + value + "\"", "end"}; };
  tryValues([](const std::string& value) { return Script("target ").quoted(value).literal(" end"); }, {"target"},
            alone);
  tryValues([](const std::string& value) { return Script("target ").braced(value).literal(" end"); }, {"target"},
            alone);
  tryValues([](const std::string& value) { return Script("target [list ").braced(value).literal(" end]"); },
            {"list", "target"}, inList);
  tryValues([](const std::string& value) { return Script("target").quoted(value).literal(" end"); }, {"unknown"},
            joined);
}

TEST_F(ScriptTest, BareIsTheWordsBetweenItsSpaces) {
  tryValues([](const std::string& value) { return Script("target ").bare(value).literal(" end"); }, {"target"},
            [](const std::string& value) { return spaceSeparated("target", value); });
  tryValues([](const std::string& value) { return Script("target [list ").bare(value).literal(" end] end"); },
            {"list", "target"}, [](const std::string& value) { return spaceSeparated("list", value); });
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
