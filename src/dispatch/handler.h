// What a handler of a companion's or link thread's command is given and gives back, and the rows of their tables.
//
// A handler is a function from a request to an outcome. It never sees packet text, the packet lock or Tcl's result.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "dispatch/description.h"
#include "dispatch/state.h"
#include "text/json.h"

namespace vernoxa {

class LogWriter;
class ScriptHost;
struct Services;

// A received message. Its texts are in the code page.
struct Request {
  std::string command;
  JsonView message;
  JsonView data;  // views nothing when the message has no object of that name

  // The text or whole number of a member of "Data", in the code page; empty or 0 when it is missing.
  std::string text(std::string_view member) const;
  int number(std::string_view member) const { return data.member(member).wholeNumber().value_or(0); }
};

struct Reply {
  Json data = Json::object();
  std::string result = "0";
  std::optional<std::string> errInfo;  // beside "Result"
};

enum HandlerStatus : int {
  handled = 0,
  stoppedEarly = -1,   // the message lacks what the handler needs, or the handler wrote its own error
  notUnderstood = -2,  // no JSON, or a command that the table does not know
  repliedItself = -3,
};

struct Outcome {
  int status = handled;
  std::optional<Reply> reply;

  static Outcome success(Json data = Json::object(), std::optional<std::string> errInfo = std::nullopt) {
    return {handled, Reply{std::move(data), "0", std::move(errInfo)}};
  }
  // "Result" "1" and the text in "ErrInfo" beside it.
  static Outcome failure(std::string errInfo, int status = handled) {
    return {status, Reply{Json::object(), "1", std::move(errInfo)}};
  }
};

struct HandlerContext {
  ScriptHost& host;
  Services& services;
  LogWriter& log;  // the traffic log, open for the length of the call
};

using Handler = Outcome (*)(const Request&, HandlerContext&);

struct HandlerRow {
  const char* name;
  Handler run;
  Members members = {};
  Calls calls = {};
  Answer answer = {};
  const char* purpose = "";  // one sentence
  // A request to place something. Whatever refuses it, nothing is being placed afterwards.
  bool placing = false;
};

// Rows of one table have different names, or the program does not compile.
template <class Rows>
consteval bool namesDiffer(const Rows& rows) {
  for (std::size_t first = 0; first < std::size(rows); ++first) {
    for (std::size_t second = first + 1; second < std::size(rows); ++second) {
      if (std::string_view(rows[first].name) == rows[second].name) {
        return false;
      }
    }
  }
  return true;
}

// What the companion asks through `packetParser`, and what the link thread asks through `packetParserForPthread`.
std::span<const HandlerRow> companionHandlers();
std::span<const HandlerRow> threadHandlers();

}  // namespace vernoxa
