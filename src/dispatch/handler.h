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

enum class MemberKind { text, number, textOrNumber, array };

// How a member of "Data" is treated before the handler runs.
enum class MemberUse {
  none,      // an unused place in a row
  needed,    // missing or of another kind: the handler does not run
  optional,  // the handler knows what to do without it
};

struct Member {
  const char* name = nullptr;
  MemberKind kind = MemberKind::text;
  MemberUse use = MemberUse::none;
  // Copied there before anything is evaluated, as "" when the member is absent.
  std::string PlacementContext::*stored = nullptr;
};

constexpr std::size_t mostMembers = 13;

struct HandlerRow {
  const char* name;
  Handler run;
  std::array<Member, mostMembers> members;
  const char* purpose;  // one sentence for the message reference
  // A request to place something. Whatever refuses it, nothing is being placed afterwards.
  bool placing = false;
};

// Rows of one table: names are different, or the program does not compile.
template <std::size_t count>
consteval bool namesDiffer(const std::array<HandlerRow, count>& rows) {
  for (std::size_t first = 0; first < count; ++first) {
    for (std::size_t second = first + 1; second < count; ++second) {
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
