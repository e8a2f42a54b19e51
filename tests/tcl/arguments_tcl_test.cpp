#include "tcl/arguments.h"

#include <gmock/gmock.h>
#include <tcl.h>

#include "support/tcl_interp_tcl.h"
#include "tcl/tcl_script_host.h"

namespace vernoxa {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TclArguments, NothingIsReadPastWhatCame) {
  const TclWords words({"cmd", "a {b c} {}", std::string("x\xC0\x80y", 4)});
  const Arguments arguments = words.arguments();
  EXPECT_EQ(arguments.count(), 3);
  EXPECT_EQ(arguments.text(2), std::string_view("x\xC0\x80y", 4));
  for (const int position : {-1, 3, 4, 1000000}) {
    EXPECT_EQ(arguments.text(position), "") << position;
    EXPECT_EQ(arguments.list(position).size(), 0) << position;
  }
  const TclList list = arguments.list(1);
  EXPECT_EQ(list.size(), 3);
  EXPECT_EQ(list.text(0), "a");
  EXPECT_EQ(list.list(1).text(1), "c");
  EXPECT_EQ(list.list(1).text(2), "");
  EXPECT_EQ(list.text(3), "");
  EXPECT_EQ(list.list(-1).list(7).size(), 0);
}

TEST(TclArguments, MalformedListIsEmpty) {
  for (const char* const text : {"a {b", "{a}b", "a \"b"}) {
    const TclWords words({"cmd", text});
    EXPECT_EQ(words.arguments().list(1).size(), 0) << text;
    EXPECT_EQ(words.arguments().text(1), text);
  }
}

TEST(TclScriptHost, AnswersWhatTclSays) {
  TclInterp interp;
  TclScriptHost host(interp.get());
  const auto answer = [&](Literal script) {
    const Evaluation result = host.evaluate(Script(script));
    return std::string(result.ok ? "ok " : "error ") + result.text;
  };
  EXPECT_EQ(answer("set a {x y}"), "ok x y");
  EXPECT_EQ(answer("error \xD6\xD0"), "error \xD6\xD0");
  EXPECT_EQ(answer("nobody"), "error invalid command name \"nobody\"");
  EXPECT_EQ(answer("return -code 7 odd"), "error command returned bad code: 7");
  EXPECT_EQ(answer("set a \"unended"), "error missing \"");
  EXPECT_EQ(answer(""), "ok ");
}

TEST(TclScriptHost, SplitsLists) {
  TclInterp interp;
  TclScriptHost host(interp.get());
  EXPECT_THAT(host.splitList("a {b c} {} \"d\\n\"").value(), ElementsAre("a", "b c", "", "d\n"));
  EXPECT_THAT(host.splitList("").value(), IsEmpty());
  EXPECT_FALSE(host.splitList("a {b"));
  EXPECT_EQ(host.evaluate(Script("set ::errorInfo")).text.find("unmatched"), std::string::npos);
}

TEST(TclScriptHost, OutlivesItsInterpreter) {
  TclInterp interp;
  TclScriptHost host(interp.get());
  interp.define("suicide", [&](const Words&) {
    Tcl_DeleteInterp(interp.get());
    return Evaluation{true, "last words"};
  });
  host.evaluate(Script("suicide"));
  EXPECT_FALSE(host.evaluate(Script("set a 1")).ok);
  EXPECT_THAT(host.splitList("a b").value(), ElementsAre("a", "b"));
}

TEST(ScriptHost, SeparatedFormIsTriedOnlyAfterAnError) {
  TclInterp interp;
  TclScriptHost host(interp.get());
  interp.define("getGuid", "separate");
  EXPECT_EQ(host.evaluateJoined(Script("getGuid\"a\" 1"), Script("getGuid \"a\" 1")).text, "separate");
  interp.define("getGuid\"a\"", "joined");
  EXPECT_EQ(host.evaluateJoined(Script("getGuid\"a\" 1"), Script("getGuid \"a\" 1")).text, "joined");
  EXPECT_FALSE(host.evaluateJoined(Script("getGuid\"b\" 1"), Script("nobody")).ok);
  EXPECT_THAT(interp.calls, ElementsAre(Words{"getGuid", "a", "1"}, Words{"getGuid\"a\"", "1"}));
}

TEST(ScriptHost, TwoVersionsAreOld) {
  TclInterp interp;
  TclScriptHost host(interp.get());
  EXPECT_FALSE(host.isOldHost());
  for (const auto& [version, old] : {std::pair{"16.3", true}, {"16.5", true}, {"16.6", false}, {"16.30", false}}) {
    interp.define("GetProductVersion", version);
    EXPECT_EQ(host.isOldHost(), old) << version;
  }
}

}  // namespace
}  // namespace vernoxa
