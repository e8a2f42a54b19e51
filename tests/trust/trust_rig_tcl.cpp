#include "trust/trust_rig_tcl.h"

#include <tcl.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "plugin/command_table.h"
#include "text/text.h"
#include "trust/failing_memory.h"
#include "wire/packet_text.h"

namespace vernoxa {
namespace {

// What a user may have beside the plug-in, and what may be named in a message.
constexpr std::array<const char*, 6> usersFiles = {"C:\\job\\a.dsn",  "C:\\job\\a.opj",     "C:\\job\\a_0.OBK",
                                                   "C:\\job\\my.olb", "C:\\job\\notes.txt", "C:\\m.json"};
// Each could be placed as a module.
constexpr const char* usersBytes = R"({"lib":[{"Name":"R"}],"children":{"a":{"name":"Wire"}}})";

int procedure(ClientData data, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  const MemoryCounts counts(false);  // no exception may cross Tcl, and this is no code of the plug-in
  auto& host = *static_cast<TrustHost*>(data);
  const bool failed = host.faults.strike();
  host.erred = host.erred || failed;
  const std::string text = failed ? "the host's procedure failed" : host.answer;
  Tcl_SetObjResult(interp, Tcl_NewStringObj(text.data(), static_cast<int>(text.size())));
  return failed ? TCL_ERROR : TCL_OK;
}

}  // namespace

TrustHost::TrustHost() {
  Tcl_FindExecutable(nullptr);
  interp_ = Tcl_CreateInterp();
  Tcl_CreateObjCommand(interp_, "unknown", procedure, this, nullptr);
  plugin::registerCommands(interp_);
}

TrustHost::~TrustHost() {
  Tcl_DeleteInterp(interp_);
}

TrustHost::Answer TrustHost::call(const Words& words) {
  const TclWords held(words);
  const int status = [&] {
    const MemoryCounts counts(true);
    return Tcl_EvalObjv(interp_, static_cast<int>(words.size()), held.objects(), TCL_EVAL_GLOBAL);
  }();
  const std::string text = Tcl_GetStringResult(interp_);
  return {text == "command returned bad code: -1" ? -1 : status, text};  // how Tcl tells of it at its top level
}

void TrustHost::load(plugin::PlugIn& plugIn) {
  const MemoryCounts counts(true);
  plugin::startUp(interp_, plugIn);
}

bool AnsweringSockets::connect(Handle, const char*, std::uint16_t) {
  ++connections;
  received_.clear();
  answer_.clear();
  return true;
}

int AnsweringSockets::send(Handle, std::string_view bytes) {
  received_.append(bytes);
  if (const auto messages = messagesIn(received_); !messages.empty()) {
    received_.clear();
    answer_.append(frameOf(replyTo(messages.front())));
  }
  return static_cast<int>(bytes.size());
}

int AnsweringSockets::receive(Handle, std::span<char> buffer) {
  const std::size_t count = std::min(buffer.size(), answer_.size());
  std::copy_n(answer_.begin(), count, buffer.begin());
  answer_.erase(0, count);
  return static_cast<int>(count);
}

TrustLoad::TrustLoad(Files* files) : LoadedPlugIn(files) {
  furnish();
  fake.files.addFile("C:\\App\\Config\\App.txt", R"({"AlgMenuLang":"CN","StartWithCadence":"1"})");
  for (const char* const file : usersFiles) {
    fake.files.addFile(file, usersBytes);
  }
}

std::string TrustLoad::harmToTheUsersFiles() const {
  for (const char* const file : usersFiles) {
    if (const std::string bytes = fake.files.bytes(file); bytes != usersBytes) {
      return std::string(file) + " is now " + bytes;
    }
  }
  return {};
}

std::vector<KeptInput> keptInputs(const std::string& target) {
  std::vector<KeptInput> inputs;
  for (const auto& file : std::filesystem::directory_iterator(TEST_SOURCE_FOLDER "/fuzz/corpus/" + target)) {
    std::ifstream stream(file.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const std::size_t line = text.find('\n');
    KeptInput& input =
        inputs.emplace_back(KeptInput{file.path().filename(), text.substr(0, line), text.substr(line + 1), {}});
    if (target != "commands") {
      input.calls = {{target == "thread_packet" ? "packetParserForPthread" : "packetParser", packetTextOf(input.rest)}};
      continue;
    }
    for (const std::string& command : splitItems(input.rest, '\n')) {
      input.calls.push_back(splitFields(command, '\t'));
    }
  }
  return inputs;
}

}  // namespace vernoxa
