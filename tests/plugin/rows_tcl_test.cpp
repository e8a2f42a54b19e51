// The rows of both request tables natively, under the sanitizers, and protocol.json against them.
#include <gtest/gtest.h>
#include <tcl.h>

#include "plugin/plug_in.h"
#include "plugin/start_up.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"

namespace vernoxa::plugin {
namespace {

// A script that evaluates one of the files, which are in UTF-8.
std::string readScript(const char* name) {
  return std::string("eval [readUtf8 {" TEST_SOURCE_FOLDER "/tests/plugin/") + name + "}]\n";
}

TEST(Rows, ScriptsAndRepliesOfEveryCommand) {
  TclInterp interp;
  FakeWorld fake;
  World world = fake.world();
  PlugIn plugIn{world, pathOf("C:\\App\\bin\\Vernoxa64.dll"), crashLogsOf(world, pathOf("C:\\App\\bin")), nullptr,
                [](std::shared_ptr<LinkThreadParts>) {}};
  fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
  fake.files.addFile("C:\\App\\module.json", R"({"children":[{"name":"Part"}],"lib":[{"Name":"RES"}]})");
  const auto host = interp.evaluate("set base {C:\\App}; set repository {" TEST_SOURCE_FOLDER
                                    "}; source $repository/tests/plugin/rows_host.tcl");
  ASSERT_EQ(host.status, TCL_OK) << host.text;
  startUp(interp.get(), plugIn);
  const auto run = interp.evaluate(readScript("rows.tcl") + readScript("rows_protocol.tcl") +
                                   "set channel [open rows-said.txt w]; puts $channel [join $said \\n]\n"
                                   "close $channel; join $failures \\n");
  EXPECT_EQ(run.status, TCL_OK) << interp.evaluate("set errorInfo").text;
  EXPECT_EQ(run.text, "");
  setActivePlugIn(nullptr);
}

}  // namespace
}  // namespace vernoxa::plugin
