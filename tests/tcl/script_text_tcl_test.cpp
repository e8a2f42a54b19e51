// What a value may not do in a script: asked of a real interpreter, which records every command that it would run.
#include "tcl/script_text.h"

#include <gtest/gtest.h>

#include "support/hostile_values.h"
#include "support/tcl_interp_tcl.h"

namespace vernoxa {
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

class ScriptTextTest : public testing::Test {
 protected:
  ScriptTextTest() {
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

TEST_F(ScriptTextTest, OrdinaryValuesKeepTheirText) {
  EXPECT_EQ(
      ScriptText("p ").quoted("C:\\\\a b\\\\c.dsn").literal(" ").bare("(1 2)").literal(" ").braced("R1,R2").text(),
      "p \"C:\\\\a b\\\\c.dsn\" (1 2) {R1,R2}");
  EXPECT_EQ(ScriptText("getGuid").joined("C:\\\\a.dsn").literal(" 1").text(), "getGuid\"C:\\\\a.dsn\" 1");
}

TEST_F(ScriptTextTest, EachPlaceNeutralisesItsOwnCharacters) {
  const std::string value = "a\"[$;]{b\n\\";
  EXPECT_EQ(ScriptText("p ").quoted(value).text(), "p \"a\\\"\\[\\$;]{b\n\\\\\"");
  EXPECT_EQ(ScriptText("p ").bare(value).text(), "p a\"\\[\\$\\;]{b\\n\\\\");
  EXPECT_EQ(ScriptText("p [list ").bare("a] \"b {c").literal("]").text(), "p [list a\\] \\\"b \\{c]");
  EXPECT_EQ(ScriptText("p ").braced("a b}").text(), "p a\\ b}");
  EXPECT_EQ(ScriptText("p ").braced("[x] $y \\}").text(), "p {[x] $y \\}}");
  EXPECT_EQ(ScriptText("p ").quoted("\\[a\\\\[b").text(), "p \"\\[a\\\\\\[b\"");  // escaped already, and not
}

TEST_F(ScriptTextTest, QuotedIsOneWord) {
  for (int count = 0; count < valuesOfEachKind; ++count) {
    const std::string value = values_.next();
    const std::string script = ScriptText("target ").quoted(value).literal(" end").text();
    ASSERT_TRUE(runs(script, {"target"})) << script;
    ASSERT_EQ(interp_.calls[0].size(), 3U) << script;
    ASSERT_EQ(interp_.calls[0][2], "end") << script;
    if (!hasBackslash(value)) {
      ASSERT_EQ(interp_.calls[0][1], value) << script;
    }
  }
}

TEST_F(ScriptTextTest, BareIsTheWordsBetweenItsBlanks) {
  for (int count = 0; count < valuesOfEachKind; ++count) {
    const std::string value = values_.next();
    const bool nested = count % 2 == 0;
    ScriptText script(nested ? "target [list " : "target ");
    script.bare(value).literal(nested ? " end] end" : " end");
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

TEST_F(ScriptTextTest, BracedIsOneWord) {
  for (int count = 0; count < valuesOfEachKind; ++count) {
    const std::string value = values_.next();
    const bool nested = count % 2 == 0;
    ScriptText script(nested ? "target [list " : "target ");
    script.braced(value).literal(nested ? " end]" : " end");
    ASSERT_TRUE(runs(script.text(), nested ? Words{"list", "target"} : Words{"target"})) << script.text();
    ASSERT_EQ(interp_.calls[0].size(), 3U) << script.text();
    if (!hasBackslash(value)) {
      ASSERT_EQ(interp_.calls[0][1], value) << script.text();
    }
  }
}

// A joined text names one command that nobody has, or is none at all.
TEST_F(ScriptTextTest, JoinedRunsNothingElse) {
  for (int count = 0; count < valuesOfEachKind; ++count) {
    const std::string value = values_.next();
    const std::string script = ScriptText("target").joined(value).literal(" end").text();
    if (!runs(script, {"unknown"})) {
      ASSERT_TRUE(interp_.calls.empty()) << script;
      ASSERT_TRUE(value.find_first_of(" \t\v\f\\") != std::string::npos) << script;  // the last quote began a word
      continue;
    }
    Words words = interp_.calls[0];
    ASSERT_TRUE(words[1].starts_with("target\"")) << script;
    if (!hasBackslash(value)) {
      Words expected = blankSeparated("target\"" + value + "\"");
      expected.insert(expected.begin(), "unknown");
      expected.emplace_back("end");
      ASSERT_EQ(words, expected) << script;
    }
  }
}

}  // namespace
}  // namespace vernoxa
