// What a value may not do in a script: asked of a real interpreter, which records every command that it would run.
#include "tcl/script.h"

#include <gtest/gtest.h>

#include <array>

#include "support/hostile_values.h"
#include "support/tcl_interp_tcl.h"

namespace vernoxa::inline tcl {
namespace {

constexpr int valuesOfEachKind = 50000;

bool hasBackslash(std::string_view value) {
  return value.find('\\') != std::string_view::npos;
}

// The words that blanks make of a value.
Words blankSeparated(const std::string& value) {
  Words words;
  bool inside = false;
  for (const char c : value) {
    const bool blank = c == ' ' || c == '\t' || c == '\v' || c == '\f';
    if (!blank && !inside) {
      words.emplace_back();
    }
    inside = !blank;
    if (inside) {
      words.back().push_back(c);
    }
  }
  return words;
}

Script startOf(bool nested) {
  return nested ? Script("target [list ") : Script("target ");
}

class ScriptTest : public testing::Test {
 protected:
  ScriptTest() {
    interp_.recordEverything();
    interp_.define("target");
    interp_.define("list", [](const Words&) { return Evaluation{true, "inner"}; });
  }

  // True when exactly these procedures ran, in their order, without an error.
  bool runs(const std::string& script, const std::vector<std::string>& procedures) {
    interp_.calls.clear();
    const int status = interp_.evaluate(script).status;
    std::vector<std::string> ran;
    for (const Words& call : interp_.calls) {
      ran.push_back(call.front());
    }
    return status == 0 && ran == procedures;
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
}

TEST_F(ScriptTest, EachPlaceNeutralisesItsOwnCharacters) {
  const std::string value = "a\"[$;]{b\n\\";
  EXPECT_EQ(Script("p ").quoted(value).text(), "p \"a\\\"\\[\\$;]{b\n\\\\\"");
  EXPECT_EQ(Script("p ").bare(value).text(), "p a\"\\[\\$\\;]{b\\n\\\\");
  EXPECT_EQ(Script("p [list ").bare("a] \"b {c").literal("]").text(), "p [list a\\] \\\"b \\{c]");
  EXPECT_EQ(Script("p ").braced("a b}").text(), "p a\\ b}");
  EXPECT_EQ(Script("p ").braced("[x] $y \\}").text(), "p {[x] $y \\}}");
  EXPECT_EQ(Script("p ").braced("*").literal("[list 1 2]").text(), "p *[list 1 2]");
  EXPECT_EQ(Script("p ").bare("a").braced("; q ").quoted("; q").text(), "p a\\;\\ q\\ \"\\;\\ q\"");
  EXPECT_EQ(Script("p ").quoted("\\[a\\\\[b").text(), "p \"\\[a\\\\\\[b\"");  // escaped already, and not
}

TEST_F(ScriptTest, QuotedIsOneWord) {
  for (int count = 0; count < valuesOfEachKind; ++count) {
    const std::string value = values_.next();
    const std::string script = Script("target ").quoted(value).literal(" end").text();
    ASSERT_TRUE(runs(script, {"target"})) << script;
    ASSERT_EQ(interp_.calls[0].size(), 3U) << script;
    ASSERT_EQ(interp_.calls[0][2], "end") << script;
    if (!hasBackslash(value)) {
      ASSERT_EQ(interp_.calls[0][1], value) << script;
    }
  }
}

TEST_F(ScriptTest, BareIsTheWordsBetweenItsBlanks) {
  for (int count = 0; count < valuesOfEachKind; ++count) {
    const std::string value = values_.next();
    const bool nested = count % 2 == 0;
    Script script = startOf(nested).bare(value);
    nested ? script.literal(" end] end") : script.literal(" end");
    ASSERT_TRUE(runs(script.text(), nested ? Words{"list", "target"} : Words{"target"})) << script.text();
    Words words = interp_.calls[0];
    ASSERT_EQ(words.back(), "end") << script.text();
    if (!hasBackslash(value)) {
      words.erase(words.begin());
      words.pop_back();
      ASSERT_EQ(words, blankSeparated(value)) << script.text();
    }
  }
}

TEST_F(ScriptTest, BracedIsOneWord) {
  for (int count = 0; count < valuesOfEachKind; ++count) {
    const std::string value = values_.next();
    const bool nested = count % 2 == 0;
    Script script = startOf(nested).braced(value);
    nested ? script.literal(" end]") : script.literal(" end");
    ASSERT_TRUE(runs(script.text(), nested ? Words{"list", "target"} : Words{"target"})) << script.text();
    ASSERT_EQ(interp_.calls[0].size(), 3U) << script.text();
    if (!hasBackslash(value)) {
      ASSERT_EQ(interp_.calls[0][1], value) << script.text();
    }
  }
}

TEST_F(ScriptTest, ValuesBesideEachOtherRunNothing) {
  constexpr std::array forms = {&Script::quoted, &Script::bare, &Script::braced};
  for (unsigned count = 0; count < valuesOfEachKind; ++count) {
    Script script("target ");
    for (const unsigned form : {count % 3, count / 3 % 3, count / 9 % 3}) {
      (script.*forms[form])(values_.next());
    }
    runs(script.text(), {});
    for (const Words& call : interp_.calls) {
      ASSERT_EQ(call.front(), "target") << script.text();
    }
  }
}

// Behind the name of a command a value adds to that one word, which names nothing else then.
TEST_F(ScriptTest, QuotedBehindANameIsOneWordWithIt) {
  for (int count = 0; count < valuesOfEachKind; ++count) {
    const std::string value = values_.next();
    const std::string script = Script("target").quoted(value).literal(" end").text();
    ASSERT_TRUE(runs(script, {"unknown"})) << script;
    ASSERT_EQ(interp_.calls[0].size(), 3U) << script;
    ASSERT_TRUE(interp_.calls[0][1].starts_with("target\"") && interp_.calls[0][1].ends_with('"')) << script;
    if (!hasBackslash(value)) {
      ASSERT_EQ(interp_.calls[0], (Words{"unknown", "target\"" + value + "\"", "end"})) << script;
    }
  }
}

}  // namespace
}  // namespace vernoxa::inline tcl
