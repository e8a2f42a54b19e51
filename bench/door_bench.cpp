// A packet through the door, against the same work written in Tcl with tcllib's JSON packages, in one run.
//
// Both decode the packet text, parse the message, ask the host for its open paths, and print and encode the reply. The
// lock and the log stand behind their interfaces here: no system call is measured. Log off.
#include <tcl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "system/fake_world.h"
#include "tcl/tcl_script_host.h"
#include "wire/packet_text.h"

namespace {

using namespace vernoxa;
using Seconds = std::chrono::duration<double>;

constexpr int packetsPerRun = 2000;
constexpr int runs = 9;

const std::string message =
    R"({"Command":"CheckOpenState","Data":{"ProjectPath":"c:/projects/board/main board.dsn"},"Result":"0"})";

const char* const hostScript = R"(
proc InitPath {} {
  return {C:\projects\other\side.dsn;C:\projects\board\main board.dsn;C:\projects\board\old.dsn;}
}
)";

const char* const tclDoor = R"(
package require json
package require json::write
json::write indented 0
proc tclDoor {packetText} {
  set request [json::json2dict [encoding convertfrom cp936 [binary decode hex $packetText]]]
  set wanted [string tolower [string map {\\ /} [dict get $request Data ProjectPath]]]
  set state Close
  foreach path [split [InitPath] {;}] {
    if {[string tolower [string map {\\ /} $path]] eq $wanted} {
      set state Open
    }
  }
  set reply [json::write object Data [json::write object State [json::write string $state]] \
      Command [json::write string [dict get $request Command]_EndResult] Result [json::write string 0]]
  return [binary encode hex [encoding convertto cp936 $reply]]
}
)";

class Interpreter {
 public:
  Interpreter() : interp_(Tcl_CreateInterp()) {
    Tcl_Init(interp_);
    Tcl_Eval(interp_, hostScript);
    if (Tcl_Eval(interp_, tclDoor) != TCL_OK) {
      std::fprintf(stderr, "%s\n", Tcl_GetStringResult(interp_));
    }
  }
  ~Interpreter() { Tcl_DeleteInterp(interp_); }
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;
  Tcl_Interp* get() const { return interp_; }

 private:
  Tcl_Interp* interp_;
};

template <class Body>
double secondsFor(Body body) {
  const auto start = std::chrono::steady_clock::now();
  for (int packet = 0; packet < packetsPerRun; ++packet) {
    body();
  }
  return Seconds(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int, char** arguments) {
  Tcl_FindExecutable(arguments[0]);
  const Interpreter interpreter;
  FakeSession services;
  auto& dispatcher = services.part<Dispatcher>();
  TclScriptHost host(interpreter.get());
  const std::string packetText = packetTextOf(message);
  const std::string script = "tclDoor " + packetText;

  const std::string ours = dispatcher.run(plugin::companionEndpoint(), packetText, host);
  Tcl_Eval(interpreter.get(), script.c_str());
  if (ours != Tcl_GetStringResult(interpreter.get())) {
    std::fprintf(stderr, "the two doors answer differently\n");
    return 1;
  }

  std::vector<double> microseconds;
  std::vector<double> ratios;
  for (int run = 0; run < runs; ++run) {
    const double plugIn = secondsFor([&] { dispatcher.run(plugin::companionEndpoint(), packetText, host); });
    const double tcl = secondsFor([&] { Tcl_Eval(interpreter.get(), script.c_str()); });
    microseconds.push_back(plugIn / packetsPerRun * 1e6);
    ratios.push_back(plugIn / tcl);
  }
  std::printf("packet through the door: %.1f us, %.3f of the same in Tcl (median of %d runs of %d packets, native)\n",
              median(microseconds), median(ratios), runs, packetsPerRun);
  return 0;
}
