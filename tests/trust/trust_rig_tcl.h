// The plug-in in an interpreter, on a fake operating system whose every call can fail.
#pragma once

#include <string>
#include <vector>

#include "support/loaded_plug_in_tcl.h"
#include "system/faults.h"

namespace vernoxa {

// True when everything is to be tried, not a sample: VERNOXA_TRUST=all in the environment.
bool tryEverything();

// The host: an interpreter in which every procedure that is not Tcl's own gives one answer, or the error of a fault.
class TrustHost {
 public:
  TrustHost();
  ~TrustHost();
  TrustHost(const TrustHost&) = delete;
  TrustHost& operator=(const TrustHost&) = delete;

  struct Answer {
    int status = 0;
    std::string text;
  };
  // A command of the plug-in, at global level.
  Answer call(const Words& words);
  Tcl_Interp* interp() const { return interp_; }

  std::string answer;  // of the host's procedures
  Faults faults;       // counts the calls of them
  bool erred = false;  // one of them has failed

 private:
  Tcl_Interp* interp_;
};

// One load for one run, beside files of the user's.
class TrustLoad : public LoadedPlugIn {
 public:
  explicit TrustLoad(Files* files = nullptr);

  // "" when the user's own files are what they were, else what happened to them.
  std::string harmToTheUsersFiles() const;
};

// One input of fuzz/corpus: the first line is what the host answers, the rest as the target reads it.
struct KeptInput {
  std::string name;
  std::string answer;
  std::string rest;
};
std::vector<KeptInput> keptInputs(const std::string& target);

// The commands of an input of "commands": one a line, words between tabs.
std::vector<Words> commandsIn(const std::string& rest);

}  // namespace vernoxa
