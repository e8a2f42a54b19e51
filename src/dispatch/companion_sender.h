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

  // Has the host's `sendPacketGlobalHandle` send a message. `ok` is false when that procedure ended in an error, whose
  // text is given then, or when the message could not be encoded; what it answers otherwise is the host scripts' own
  // affair.
  Evaluation send(ScriptHost& host, std::string_view message) const;
  // The same with the answer in the traffic log.
  void sendLogged(ScriptHost& host, std::string_view message) const;

 private:
  const Logs& logs_;
  UserMessages& messages_;
};

}  // namespace vernoxa::inline dispatch
