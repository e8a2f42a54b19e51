// Carries out packets on the host's thread: packet text, message, request, row, checked members, handler, outcome,
// reply, packet text. Each step gives its value or a `Failure`; only this class decides what is reported and answered
// then.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "dispatch/handler.h"
#include "system/system.h"

namespace vernoxa::inline system {
class Logs;
class StandardOutput;
class UserMessages;
}  // namespace vernoxa::inline system

namespace vernoxa::inline dispatch {

// A place at which packets arrive.
struct Endpoint {
  std::span<const HandlerRow> rows;
  // Takes the answers to the plug-in's own messages, which are named "..._EndResult". Without it they are requests like
  // any other, and none has such a name.
  Handler applyReply;
  const char* failureText;  // "ErrInfo" when a request failed without a reply of its own
};

class Dispatcher {
 public:
  Dispatcher(const Logs& logs, UserMessages& messages, StandardOutput& output, std::unique_ptr<Lock> lock,
             plugin::Session& session)
      : logs_(logs), messages_(messages), output_(output), lock_(std::move(lock)), session_(session) {}

  // Takes a packet text and gives the packet text of the reply, empty if there is none. Text that is not packet text is
  // encoded and given back. Packets are carried out one at a time, except that a host script which runs the event loop
  // inside a handler may bring in the next.
  std::string run(const Endpoint& endpoint, std::string_view packetText, ScriptHost& host);

  // The same from message to reply, in the code page. An exception in a handler shows "格式有误".
  std::string replyTo(const Endpoint& endpoint, const std::string& message, ScriptHost& host, LogWriter& log);

 private:
  Outcome carryOut(const Endpoint& endpoint, const Request& request, ScriptHost& host, LogWriter& log);
  Outcome runRow(const HandlerRow& row, RequestCall& call);
  void say(const Failure& failure, LogWriter& log);

  const Logs& logs_;
  UserMessages& messages_;
  StandardOutput& output_;
  const std::unique_ptr<Lock> lock_;
  plugin::Session& session_;
};

}  // namespace vernoxa::inline dispatch
