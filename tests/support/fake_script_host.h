// A host without an interpreter: keeps the scripts and gives set answers.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tcl/script_host.h"
#include "text/text.h"
#include "wire/packet_text.h"

namespace vernoxa {

// The script that has the host send a message to the companion.
inline std::string sendingScript(std::string_view message) {
  return "sendPacketGlobalHandle \"" + packetTextOf(message) + "\"";
}

class FakeScriptHost final : public ScriptHost {
 public:
  // By the whole script, then by its first word; everything else is answered "" with success.
  std::map<std::string, Evaluation> answers;
  std::function<void(const std::string& script)> during;  // runs inside each evaluation
  std::vector<std::string> scripts;

  void answer(const std::string& script, const std::string& text, bool ok = true) { answers[script] = {ok, text}; }

  Evaluation evaluate(const Script& given) override {
    const std::string& script = given.text();
    scripts.push_back(script);
    if (during) {
      during(script);
    }
    for (const std::string& key : {script, script.substr(0, script.find_first_of(" \""))}) {
      if (const auto found = answers.find(key); found != answers.end()) {
        return found->second;
      }
    }
    return {true, ""};
  }

  // Plain words only, no list else: one with quoting belongs into a test with an interpreter.
  std::optional<std::vector<std::string>> splitList(const std::string& list) override {
    return list.find('{') == std::string::npos ? std::optional(splitItems(list, ' ')) : std::nullopt;
  }
};

}  // namespace vernoxa
