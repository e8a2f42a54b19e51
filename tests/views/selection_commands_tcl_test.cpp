#include "views/selection_commands.h"

#include <gmock/gmock.h>

#include "support/command_test_tcl.h"

namespace vernoxa::views {
namespace {

using testing::ElementsAre;

class SelectionCommands : public CommandTest {};

std::optional<std::size_t> takeLast(const std::vector<std::string>& texts) {
  return texts.empty() ? std::nullopt : std::optional(texts.size() - 1);
}

TEST_F(SelectionCommands, SelectJumpPartOffersTheSortedCandidatesAndAnswersTheirBytes) {
  fake.desktop.user = takeLast;
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
    fake.desktop.offered.clear();
    const CommandResult result = call(plugin::run<selectJumpPart>, {each.candidates, "no number"});
    EXPECT_EQ(result.text, each.answer) << each.candidates;
    EXPECT_EQ(result.status, commandDone);
    EXPECT_THAT(fake.desktop.offered, ElementsAre(each.offered));
  }
}

TEST_F(SelectionCommands, SelectJumpPartAnswersNothingWithoutAChoiceAndNeedsBothArguments) {
  EXPECT_EQ(call(plugin::run<selectJumpPart>, {"U1;U2", "1"}).text, "");
  EXPECT_EQ(fake.desktop.offered.size(), 1U);
  EXPECT_EQ(call(plugin::run<selectJumpPart>, {"U1;U2"}).text, "");
  EXPECT_EQ(call(plugin::run<selectJumpPart>).status, commandDone);
  EXPECT_EQ(fake.desktop.offered.size(), 1U);
}

TEST_F(SelectionCommands, SelectJumpPartEndsWellAfterAnException) {
  for (const std::size_t position : {std::size_t{2}, std::size_t{0}}) {
    fake.desktop.user = [position](const std::vector<std::string>&) {
      return position == 0 ? throw std::bad_alloc() : std::optional(position);
    };
    const CommandResult result = call(plugin::run<selectJumpPart>, {"U1;U2", "1"});
    EXPECT_EQ(result.text, "");
    EXPECT_EQ(result.status, commandDone);
  }
  EXPECT_EQ(crashes(), "SelectJumpPart\nSelectJumpPart");
}

}  // namespace
}  // namespace vernoxa::views
