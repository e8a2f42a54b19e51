// Questions to the companion, each over a connection of its own.
//
// They run on the host's thread and hold it for one request and its reply, 30 seconds at most. Where the system takes
// seconds to refuse a connection, they are asked only while the host's scripts are connected to the companion.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "text/json.h"

namespace vernoxa::link {
class CompanionLink;
}  // namespace vernoxa::link
namespace vernoxa::inline system {
class Clock;
class Logs;
class Sockets;
class StandardOutput;
}  // namespace vernoxa::inline system

namespace vernoxa::modules {

// A reply, with the members that every reply has.
struct QueryReply {
  std::string text;       // as received, code page
  Json message;           // empty if the reply is not valid JSON
  JsonView data;          // "Data"
  std::string value;      // the member that was asked for
  std::string errorText;  // the number in "Result" when it is not 0
};

class CompanionQuery {
 public:
  CompanionQuery(const link::CompanionLink& link, Sockets& sockets, Clock& clock, StandardOutput& output,
                 const Logs& logs)
      : link_(link), sockets_(sockets), clock_(clock), output_(output), logs_(logs) {}

  // Sends a request (code page) and reads its reply. `nullopt`, with a line in the traffic log, if there is no
  // connection
  // ("can't Init"), no reply ("ret:-1"), or if "Result", "Data" or that member of "Data" is missing (its name). Throws
  // std::runtime_error for a reply that is not packet text.
  std::optional<QueryReply> ask(std::string_view request, std::string_view member) const;

 private:
  std::optional<std::string> exchange(std::string_view request) const;

  const link::CompanionLink& link_;
  Sockets& sockets_;
  Clock& clock_;
  StandardOutput& output_;
  const Logs& logs_;
};

}  // namespace vernoxa::modules
