// Finds the handler of a message and turns its outcome into the reply text.
#pragma once

#include <span>
#include <string>

#include "dispatch/handler.h"

namespace vernoxa {

enum class Answers {
  accepted,  // messages named "..._EndResult" are answers to the plug-in's own messages
  unknown,   // they are commands like any other, and none has such a name
};

// Runs in a fixed order: parse, "Command", answers, table, stored members, needed members, handler. `message` and
// `reply` are in the code page; `reply` is left empty when nothing is to be answered. Gives a `HandlerStatus`.
// An exception in a handler shows "格式有误" and ends as `stoppedEarly`.
int dispatch(std::span<const HandlerRow> rows, Answers answers, const std::string& message, std::string& reply,
             ScriptHost& host, Services& services);

// Members "Data", "Command", "Result" and, when the reply has one, "ErrInfo"; unformatted.
std::string replyText(const std::string& command, Reply reply);

}  // namespace vernoxa
