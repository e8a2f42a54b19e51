// The rows of both request tables natively, under the sanitizers, and protocol.json against them.
#include <gtest/gtest.h>
#include <tcl.h>

#include "support/loaded_plug_in_tcl.h"

namespace vernoxa::plugin {
namespace {

// A script that evaluates one of the files, which are in UTF-8.
std::string readScript(const char* name) {
  return std::string("eval [readUtf8 {" TEST_SOURCE_FOLDER "/tests/plugin/") + name + "}]\n";
}

TEST(Rows, ScriptsAndRepliesOfEveryCommand) {
  TclInterp interp;
  LoadedPlugIn loaded;
  loaded.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
  loaded.fake.files.addFile("C:\\App\\module.json", R"({"children":[{"name":"Part"}],"lib":[{"Name":"RES"}]})");
  const auto host = interp.evaluate("set base {C:\\App}; set repository {" TEST_SOURCE_FOLDER
                                    "}; source $repository/tests/plugin/rows_host.tcl");
  ASSERT_EQ(host.status, TCL_OK) << host.text;
  startUp(interp.get(), loaded.plugIn);
  const auto run = interp.evaluate(readScript("rows.tcl") + readScript("rows_protocol.tcl") +
                                   "set channel [open {" ROWS_SAID
                                   "} w]; puts $channel [join $said \\n]\n"
                                   "close $channel; join $failures \\n");
  EXPECT_EQ(run.status, TCL_OK) << interp.evaluate("set errorInfo").text;
  EXPECT_EQ(run.text, "");
}

}  // namespace
}  // namespace vernoxa::plugin
