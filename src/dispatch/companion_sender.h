// Messages to the companion, which the host's scripts send over their own connection.
#pragma once

#include <string>
#include <string_view>

#include "tcl/script_host.h"

namespace vernoxa::inline system {
class Logs;
class UserMessages;
}  // namespace vernoxa::inline system

namespace vernoxa::inline dispatch {

// Messages are in the code page. What cannot be encoded (memory) shows a message box.
class CompanionSender {
 public:
  CompanionSender(const Logs& logs, UserMessages& messages) : logs_(logs), messages_(messages) {}

  // The packet text of a message, for a script that sends it; empty when it could not be encoded.
  std::string packetText(std::string_view message) const;

  // Has the host's `sendPacketGlobalHandle` send a message. `ok` is false if that procedure ended in an error (then the
  // text is that of the error) or if the message could not be encoded. Any other answer means nothing to the plug-in.
  Evaluation send(ScriptHost& host, std::string_view message) const;
  // The same, and writes the answer into the traffic log.
  void sendLogged(ScriptHost& host, std::string_view message) const;

 private:
  const Logs& logs_;
  UserMessages& messages_;
};

}  // namespace vernoxa::inline dispatch
