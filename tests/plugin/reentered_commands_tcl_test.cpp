// Every command and every handler, while the host's event loop runs inside its boxes, its dialog and its evaluations
// and does the worst that a script can: it reads the command's lists as something else, rewrites and unsets the
// variables that hold them, puts other texts into the memory that this gives back, and brings the next packet.
#include <gmock/gmock.h>
#include <tcl.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>

#include "support/reentered_stage_tcl.h"
#include "support/soak.h"
#include "support/table.h"

namespace vernoxa::plugin {
namespace {

// Done to the lists and the memory of the call that runs the event loop.
constexpr const char* spoil = R"(
  foreach name [info globals argument*] {
    upvar #0 $name value
    foreach element $value {
      foreach inner $element {string length $inner}
      string length $element
    }
    string length $value
    append value { more}
    set value {}
    unset value
  }
  set noise {}
  for {set size 0} {$size < 300} {incr size} {
    lappend noise [list [string repeat ! $size] [expr {$size * 3}]]
  }
)";

const std::string worst = std::string(spoil) + R"(
  packetParser $nested
  sendRemoveFromBom {short 1;2;3;4;5;6 short}
  SelectJumpPart {U2;U1} 1
)";

// What the outside sees of one call.
struct Shown {
  std::vector<std::string> all;  // the result, what was seen, and the files
  std::size_t events = 0;
  int locks = 0;
};

Shown show(const Entry& entry, bool conversionsFail, bool disturbed) {
  Stage stage({entry.sample.before});
  stage.disturb(disturbed ? worst : "");
  stage.fake.codePage.throwing = conversionsFail;  // they show a box then
  Shown shown{{stage.call(entry.command, entry.sample.arguments)}, stage.seen.size(), stage.fake.locks.mostHeld};
  stage.fake.codePage.throwing = false;
  shown.all.insert(shown.all.end(), stage.seen.begin(), stage.seen.end());
  stage.interp.evaluate("outputSVGFile {S P x y K}; outputGraphicFile g; outputMarketFile 0 1 2 3");
  for (const std::string& file : stage.files()) {
    shown.all.push_back(file);
  }
  return shown;
}

TEST(ReenteredCommands, NoCallLooksAtWhatAScriptTookAway) {
  std::vector<Entry> all = everyCall();
  for (const char* const door : {"packetParser", "packetParserForPthread"}) {
    all.push_back({"a box for what is no packet text", door, {{"zz"}}});
  }
  std::vector<std::string> quiet;
  for (const Entry& entry : all) {
    std::size_t disturbances = 0;
    for (const bool conversionsFail : {false, true}) {
      SCOPED_TRACE(entry.name + (conversionsFail ? ", conversions fail" : ""));
      const Shown disturbed = show(entry, conversionsFail, true);
      EXPECT_EQ(disturbed.all, show(entry, conversionsFail, false).all);
      disturbances += disturbed.events;
      if (entry.name != entry.command && !conversionsFail) {
        EXPECT_EQ(disturbed.locks, entry.name == "Cancel" ? 1 : 2);
      }
    }
    if (disturbances == 0) {
      quiet.push_back(entry.name);
    }
  }
  EXPECT_THAT(quiet, testing::SizeIs(26));  // commands that neither show a box nor evaluate
}

enum class Order { nested, outerFirst, innerFirst };

// What fails beside: nothing, all conversions, or the evaluation that the inner call runs in.
enum class Failing { nothing, conversions, evaluation };

// Shows what the plug-in keeps for later, files that were begun among it.
constexpr const char* showState = R"(
  set state [list [getOpenFileCount] [packetParserForPthread $newOpenPath] [getOlbPath] [getNewOlbPath] [getSelfUserId]]
  PlacePartProperty
  placeMarketPart
  sendUploadMarket 1 2 3 id w k
  outputSVGFile {S P x y K}
  outputGraphicFile g
  lappend state [outputMarketFile 0 1 2 3]
)";

// What two calls leave to the outside: both answers, all that was shown, asked and sent in whatever order, what the
// plug-in keeps, and the files. Nested, the inner call runs inside that event loop of the outer one.
Words traceOf(const Entry& outer, const Entry& inner, Order order, Failing failing, std::size_t event) {
  std::string innerScript = "list [catch {" + inner.command;
  for (const std::string& argument : inner.sample.arguments) {
    innerScript += " {" + argument + "}";
  }
  innerScript += "} text] $text";
  Stage stage({outer.sample.before, inner.sample.before});
  stage.fake.codePage.throwing = failing == Failing::conversions;
  std::string innerAnswer = order == Order::innerFirst ? stage.aside(innerScript) : "";
  stage.disturb(order == Order::nested ? spoil + innerScript : "", event);
  if (failing == Failing::evaluation) {
    stage.fail(event);
  }
  const std::string outerAnswer = stage.call(outer.command, outer.sample.arguments);
  if (order != Order::innerFirst) {
    innerAnswer = order == Order::nested ? stage.disturbed : stage.aside(innerScript);
  }
  stage.fake.codePage.throwing = false;
  const std::string state = stage.aside(showState);
  Words trace = stage.files();
  trace.insert(trace.end(), stage.asked.begin(), stage.asked.end());
  trace.insert(trace.end(), {"outer " + outerAnswer, "inner " + innerAnswer, "state " + state,
                             "clipboard " + stage.fake.clipboard.text.value_or("(none)"),
                             "started " + joined(stage.fake.processes.started)});
  std::sort(trace.begin(), trace.end());
  return trace;
}

// The same but for the order in which the placements drew the numbers that name their libraries.
bool sameWithOtherNumbers(const Words& nested, const Words& serial) {
  const auto library = [](char number) { return std::string("C:/Mods/") + number + ".olb"; };
  const std::string drawn = "123456";
  // Each placement draws two, of which the first names the temporary library.
  for (const std::string numbers : {"123456", "125634", "341256", "345612", "561234", "563412"}) {
    Words renamed = nested;
    for (std::string& line : renamed) {
      for (std::size_t at = 0; (at = line.find("C:/Mods/", at)) != std::string::npos; ++at) {
        const std::size_t index = drawn.find(line[at + 8]);
        if (index != std::string::npos && line.compare(at, 13, library(drawn[index])) == 0) {
          line[at + 8] = numbers[index];
        }
      }
    }
    std::sort(renamed.begin(), renamed.end());
    if (renamed == serial) {
      return true;
    }
  }
  return false;
}

// What two calls show one after the other, in both orders.
class OneAfterTheOther {
 public:
  OneAfterTheOther(const Entry& outer, Failing failing) : outer_(outer), failing_(failing) {}

  const std::array<Words, 2>& with(const Entry& inner, std::size_t event) {
    // Which event it is makes a difference only when that one fails.
    const auto [found, added] =
        known_.try_emplace({failing_ == Failing::evaluation ? event : 0, inner.command + inner.name});
    if (added) {
      found->second = {traceOf(outer_, inner, Order::outerFirst, failing_, event),
                       traceOf(outer_, inner, Order::innerFirst, failing_, event)};
    }
    return found->second;
  }

 private:
  const Entry& outer_;
  Failing failing_;
  std::map<std::pair<std::size_t, std::string>, std::array<Words, 2>> known_;
};

// Names of what fails, for the table below and for messages.
const char* nameOf(Failing failing) {
  return failing == Failing::nothing ? "nothing" : failing == Failing::conversions ? "conversions" : "evaluation";
}

// Pairs that show something else than one after the other: what has to fail for it, the outer call, the inner ones, and
// why.
constexpr const char* exceptions = R"(
  nothing | PlaceDSNModule | sendUploadMarket | it tells that picture, which the outer one then keeps for the next
  nothing | PlaceDSNModule PlaceDsnLibPartModule | placeMarketPart | it places and removes that file first
  nothing | placeMarketPart | placeMarketPart | it leaves the library of the one that runs, and draws no names
  nothing | placeMarketPart | removeDatFile | it removes the library that is being made
  nothing | creatClient | creatClient | there is a client only when the host has answered, so two are wanted
  conversions | outputSVGFile | outputSVGFile | both show the box before one of them writes the page
  evaluation | FileStatus | GetNewOpenPath packetParserForPthread | it reports before, and lists after the inner one
)";

std::string pairOf(Failing failing, const std::string& outer, const std::string& inner) {
  return inner + " inside " + outer + ", failing: " + nameOf(failing);
}

std::set<std::string> exceptedPairs(Failing failing) {
  std::set<std::string> pairs;
  for (const auto& row : rowsOf(exceptions)) {
    for (const std::string& outer : splitItems(row[1], ' ')) {
      for (const std::string& inner : splitItems(row[2], ' ')) {
        if (row[0] == nameOf(failing)) {
          pairs.insert(pairOf(failing, outer, inner));
        }
      }
    }
  }
  return pairs;
}

std::string difference(const Words& nested, const Words& serial) {
  std::string lines;
  const auto add = [&](const char* sign, const Words& has, const Words& lacks) {
    Words left;
    std::set_difference(has.begin(), has.end(), lacks.begin(), lacks.end(), std::back_inserter(left));
    for (const std::string& line : left) {
      lines += sign + line + "\n";
    }
  };
  add("+ ", nested, serial);
  add("- ", serial, nested);
  return lines;
}

Words eventsOf(const Entry& entry, Failing failing) {
  Stage stage({entry.sample.before});
  stage.fake.codePage.throwing = failing == Failing::conversions;
  stage.call(entry.command, entry.sample.arguments);
  return stage.seen;
}

// Every event loop of every command and request runs another call, and every call is run so. Which with which changes
// from event to event; all of them with all take minutes, with VERNOXA_TRUST=all.
TEST(ReenteredCommands, TwoCallsShowWhatTheyShowOneAfterTheOther) {
  const std::vector<Entry> outers = everyCall();
  const std::vector<Entry> inners = everyCall(Values::others);
  const std::set<std::string> alwaysExcepted = exceptedPairs(Failing::nothing);
  std::set<std::string> differing;
  std::size_t next = 0;
  int pairs = 0;
  for (const Failing failing : {Failing::nothing, Failing::conversions, Failing::evaluation}) {
    const std::size_t innersOfEach = !tryEverything() ? 1 : failing == Failing::nothing ? inners.size() : 4;
    const std::set<std::string> excepted = exceptedPairs(failing);
    for (const Entry& outer : outers) {
      const Words events = eventsOf(outer, failing);
      OneAfterTheOther serial(outer, failing);
      for (std::size_t event = 0; event < events.size(); ++event) {
        if (failing == Failing::evaluation && !events[event].starts_with("unknown")) {
          continue;  // a box does not fail
        }
        for (std::size_t count = 0; count < innersOfEach; ++count, ++pairs) {
          const Entry& inner = inners[next++ % inners.size()];
          const Words nested = traceOf(outer, inner, Order::nested, failing, event);
          const auto& [outerFirst, innerFirst] = serial.with(inner, event);
          if (nested == outerFirst || nested == innerFirst || sameWithOtherNumbers(nested, outerFirst) ||
              sameWithOtherNumbers(nested, innerFirst)) {
            continue;
          }
          const std::string always = pairOf(Failing::nothing, outer.name, inner.name);
          const std::string pair = pairOf(failing, outer.name, inner.name);
          if (failing == Failing::nothing) {
            differing.insert(pair);
          }
          EXPECT_TRUE(excepted.count(pair) == 1 || alwaysExcepted.count(always) == 1)
              << pair << ", at event " << event << ": " << events[event] << "\nother than with the outer one first:\n"
              << difference(nested, outerFirst) << "and with the inner one first:\n"
              << difference(nested, innerFirst);
        }
      }
    }
  }
  if (tryEverything()) {
    EXPECT_EQ(differing, alwaysExcepted);  // none is left over
  }
  EXPECT_GE(pairs, 300);
  RecordProperty("pairs", pairs);
}

// In a box that an export shows the host ends it, or begins another one: nothing of that gets into the old file.
TEST(ReenteredCommands, AnExportMayEndOrBeRenewedInsideItsOwnBox) {
  // What shows a box, what runs in it, what comes after, and the files with their last "id". % is a character of the
  // code page.
  for (const auto& row : rowsOf(R"(
    addToPageList {Page Q 3 4 L} | outputSVGFile {S P x y K} | outputSVGFile {S Q x y L} | S@!@P@!@K P S@!@Q@!@L Q
    addToPageList {Page Q 3 4 L} | initSVGList; addToPageList {Page X 1 2 M} | outputSVGFile {S N x y M} | S@!@N@!@M Q
    outputSVGFile {% P x y K} | initSVGList; addToPageList {Page X 1 2 M} | outputSVGFile {S N x y M} | S@!@N@!@M X
    outputGraphicFile % | initGraphicFile; addGraphicLibList {Name T} | outputGraphicFile g | g T
    )")) {
    SCOPED_TRACE(row[0] + " with " + row[1]);
    Stage stage({"initSVGList; addToPageList {Schematic \xB5\xE7}; addToPageList {Page P 1 2 K}",
                 "initGraphicFile; addGraphicLibList {Name S}"});
    stage.disturb(row[1]);
    stage.fake.codePage.throwing = true;
    EXPECT_EQ(stage.interp.evaluate(replaceAll(row[0], "%", "\xB5\xE7")).status, TCL_OK);
    stage.fake.codePage.throwing = false;
    EXPECT_THAT(stage.seen, testing::Contains(u8"box GBK格式异常"_gbk));
    EXPECT_EQ(stage.interp.evaluate(row[2]).status, TCL_OK);
    std::string made;
    for (const std::string folder : {"C:\\App\\Cache\\Output", "C:\\App\\Cache\\Library"}) {
      for (const FolderEntry& file : stage.fake.files.entries(folder)) {
        const std::string bytes = stage.fake.files.bytes(folder + "\\" + file.name);
        made += (made.empty() ? "" : " ") + file.name.substr(0, file.name.find('.')) + " " +
                splitFields(bytes.substr(bytes.rfind("\"id\":\t\"")), '"').at(3);
      }
    }
    EXPECT_EQ(made, row[3]);
  }
}

}  // namespace
}  // namespace vernoxa::plugin
