#include "views/selection_commands.h"

#include <gmock/gmock.h>

#include "support/fake_script_host.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"

namespace vernoxa::views {
namespace {

using testing::ElementsAre;

class SelectionCommands : public testing::Test {
 protected:
  using Command = CommandResult (*)(CommandCall&, plugin::Session&);

  CommandResult invoke(Command command, const Words& words) {
    const TclWords held(words);
    const Arguments arguments = held.arguments();
    CommandCall call{arguments, host};
    return command(call, fake.session);
  }
  FakeDesktop& desktop() { return fake.fake.desktop; }

  TclInterp interp;  // Tcl's objects need its library started
  FakeSession fake;
  FakeScriptHost host;
};

std::optional<std::size_t> takeLast(const std::vector<std::string>& texts) {
  return texts.empty() ? std::nullopt : std::optional(texts.size() - 1);
}

TEST_F(SelectionCommands, SelectJumpPartOffersTheSortedCandidatesAndAnswersTheirBytes) {
  desktop().user = takeLast;
  const struct {
    std::string candidates;
    Words offered;
    std::string answer;
  } cases[] = {
      {"U3;U1;U2", {"U1", "U2", "U3"}, "U3"},
      {"U1", {"U1"}, "U1"},
      {";U2;;u1;U10;", {"U10", "U2", "u1"}, "u1"},
      {utf8(u8"电阻;R1"), {"R1", utf8(u8"电阻")}, utf8(u8"电阻")},
      {"R1;\xB5\xE7\xD7\xE8",
       {"R1", utf8(u8"电阻")},
       "\xB5\xE7\xD7\xE8"},  // shown as what it means, given back as it was
      {"", {}, ""},
  };
  for (const auto& each : cases) {
    desktop().offered.clear();
    const CommandResult result = invoke(plugin::run<selectJumpPart>, {"SelectJumpPart", each.candidates, "no number"});
    EXPECT_EQ(result.text, each.answer) << each.candidates;
    EXPECT_EQ(result.status, commandDone);
    EXPECT_THAT(desktop().offered, ElementsAre(each.offered));
  }
}

TEST_F(SelectionCommands, SelectJumpPartAnswersNothingWithoutAChoiceAndNeedsBothArguments) {
  EXPECT_EQ(invoke(plugin::run<selectJumpPart>, {"SelectJumpPart", "U1;U2", "1"}).text, "");
  EXPECT_EQ(desktop().offered.size(), 1U);
  EXPECT_EQ(invoke(plugin::run<selectJumpPart>, {"SelectJumpPart", "U1;U2"}).text, "");
  EXPECT_EQ(invoke(plugin::run<selectJumpPart>, {"SelectJumpPart"}).status, commandDone);
  EXPECT_EQ(desktop().offered.size(), 1U);
}

TEST_F(SelectionCommands, SelectJumpPartEndsWellAfterAnException) {
  for (const std::size_t position : {std::size_t{2}, std::size_t{0}}) {
    desktop().user = [position](const std::vector<std::string>&) {
      return position == 0 ? throw std::bad_alloc() : std::optional(position);
    };
    const CommandResult result = invoke(plugin::run<selectJumpPart>, {"SelectJumpPart", "U1;U2", "1"});
    EXPECT_EQ(result.text, "");
    EXPECT_EQ(result.status, commandDone);
  }
  EXPECT_EQ(fake.crashes(), "SelectJumpPart\nSelectJumpPart");
}

}  // namespace
}  // namespace vernoxa::views
