#include "views/selection_commands.h"

#include "support/command_test_tcl.h"

namespace vernoxa::views {
namespace {

class SelectionCommands : public CommandTest {
 protected:
  std::string select(const Words& words) {
    const CommandResult result = call(plugin::run<selectJumpPart>, words);
    EXPECT_EQ(result.status, commandDone);
    return result.text;
  }
};

TEST_F(SelectionCommands, SelectJumpPartOffersTheSortedCandidatesAndAnswersTheBytesOfTheLast) {
  fake.desktop.user = [](const std::vector<std::string>& texts) {
    return texts.empty() ? std::nullopt : std::optional(texts.size() - 1);
  };
  const std::tuple<std::string, Words, std::string> cases[] = {
      {"U3;U1;U2", {"U1", "U2", "U3"}, "U3"},
      {";U2;;u1;U10;", {"U10", "U2", "u1"}, "u1"},
      {utf8(u8"电阻;R1"), {"R1", utf8(u8"电阻")}, utf8(u8"电阻")},
      {"R1;\xB5\xE7\xD7\xE8", {"R1", utf8(u8"电阻")}, "\xB5\xE7\xD7\xE8"},  // shown as what it means, given as it was
      {"", {}, ""},
  };
  for (const auto& [candidates, offered, answer] : cases) {
    fake.desktop.offered.clear();
    EXPECT_EQ(select({candidates, "no number"}), answer) << candidates;
    EXPECT_THAT(fake.desktop.offered, testing::ElementsAre(offered));
  }
}

TEST_F(SelectionCommands, SelectJumpPartAnswersNothingWithoutAChoiceAndNeedsBothArguments) {
  EXPECT_EQ(select({"U1;U2", "1"}) + select({"U1;U2"}) + select({}), "");
  EXPECT_EQ(fake.desktop.offered.size(), 1U);
}

TEST_F(SelectionCommands, SelectJumpPartEndsWellAfterAnException) {
  for (const std::size_t position : {std::size_t{2}, std::size_t{0}}) {
    fake.desktop.user = [position](const std::vector<std::string>&) {
      return position == 0 ? throw std::bad_alloc() : std::optional(position);
    };
    EXPECT_EQ(select({"U1;U2", "1"}), "");
  }
  EXPECT_EQ(crashes(), "SelectJumpPart\nSelectJumpPart");
}

}  // namespace
}  // namespace vernoxa::views
