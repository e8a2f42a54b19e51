// The doors through which outside bytes come in, each as a function from any bytes.
//
// One program holds all targets: with libFuzzer it looks for inputs that break one of them, without it it replays
// files.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vernoxa::fuzz {

struct Target {
  const char* name;  // and that of its folder under fuzz/corpus
  void (*run)(std::string_view input);
};

std::span<const Target> targets();
const Target* findTarget(std::string_view name);

// Ends the process when it does not hold: that is how a finding is told.
void require(bool holds, std::string_view finding);

// Takes the input up to a separator, which is left out, from the front of what is left.
std::string_view takeUntil(std::string_view& left, char separator);

// grammar.cpp: an input that is right in form, the same for the same seed; empty for a target whose inputs have no such
// form.
std::string rightInForm(std::string_view target, std::uint32_t seed);

// link_targets.cpp: what sockets and packet doors read before any script runs
void packetText(std::string_view input);
void frame(std::string_view input);
void envelope(std::string_view input);
void linkThread(std::string_view input);

// text_targets.cpp: files, texts of the host, script texts
void configuration(std::string_view input);
void texts(std::string_view input);
void scriptText(std::string_view input);
void registry(std::string_view input);
void metafile(std::string_view input);

// command_targets.cpp: everything that runs in an interpreter
void companionPacket(std::string_view input);
void threadPacket(std::string_view input);
void commands(std::string_view input);
void moduleFile(std::string_view input);

}  // namespace vernoxa::fuzz
