// The plug-in in an interpreter, on a fake operating system whose every call can fail.
#pragma once

#include <string>
#include <vector>

#include "support/loaded_plug_in_tcl.h"
#include "support/soak.h"
#include "system/faults.h"

namespace vernoxa {

// The host: an interpreter in which every procedure that is not Tcl's own gives one answer, or the error of a fault.
class TrustHost {
 public:
  TrustHost();
  ~TrustHost();
  TrustHost(const TrustHost&) = delete;
  TrustHost& operator=(const TrustHost&) = delete;

  using Answer = TclInterp::Evaluated;
  // A command of the plug-in, at global level. Its allocations count, and those of a load.
  Answer call(const Words& words);
  void load(plugin::PlugIn& plugIn);

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

// Another end that answers each message at once; nothing of what went over the connections is kept.
class AnsweringSockets : public Sockets {
 public:
  void startUp() override { ++started; }
  void cleanUp() override { --started; }
  std::optional<Handle> open() override { return static_cast<Handle>(++stillOpen); }
  bool connect(Handle, const char*, std::uint16_t) override;
  int send(Handle, std::string_view bytes) override;
  int receive(Handle, std::span<char> buffer) override;
  bool waitReadable(Handle, std::chrono::milliseconds) override { return true; }
  void shutDown(Handle) override {}
  void close(Handle) override { --stillOpen; }
  int lastErrorNumber() override { return 0; }

  long connections = 0;
  long stillOpen = 0;
  long started = 0;

 private:
  virtual std::string replyTo(const std::string& message) = 0;

  std::string received_;
  std::string answer_;
};

// One input of fuzz/corpus: the first line is what the host answers, the rest as the target reads it.
struct KeptInput {
  std::string name;
  std::string answer;
  std::string rest;
  std::vector<Words> calls;  // of "commands" each line, its words between tabs; else the rest as a packet at its door
};
std::vector<KeptInput> keptInputs(const std::string& target);

}  // namespace vernoxa
