// The rows of both command tables natively, under the sanitizers.
#include <gtest/gtest.h>
#include <tcl.h>

#include "plugin/plug_in.h"
#include "plugin/start_up.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"

namespace vernoxa {
namespace {

TEST(Rows, ScriptsAndRepliesOfEveryCommand) {
  TclInterp interp;
  FakeWorld fake;
  World world = fake.world();
  PlugIn plugIn{world, pathOf("C:\\App\\bin\\Vernoxa64.dll"), Logs(world, pathOf("C:\\App\\bin")), nullptr,
                [](std::shared_ptr<Session>) {}};
  startUp(interp.get(), plugIn);
  const auto run = interp.evaluate(
      "set base {C:\\App}; set channel [open {" TEST_SOURCE_FOLDER
      "/tests/plugin/rows.tcl}]; fconfigure $channel -encoding utf-8; eval [read $channel]; close $channel; "
      "join $failures \\n");
  EXPECT_EQ(run.status, TCL_OK);
  EXPECT_EQ(run.text, "");
  setActivePlugIn(nullptr);
}

}  // namespace
}  // namespace vernoxa
