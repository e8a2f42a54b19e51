#include "dispatch/dispatcher.h"

#include <algorithm>

#include "system/log.h"
#include "system/user_messages.h"
#include "wire/envelope.h"
#include "wire/packet_text.h"

namespace vernoxa::inline dispatch {
namespace {

class HeldLock {
 public:
  explicit HeldLock(Lock& lock) : lock_(lock) { lock_.acquire(); }
  ~HeldLock() { lock_.release(); }
  HeldLock(const HeldLock&) = delete;
  HeldLock& operator=(const HeldLock&) = delete;

 private:
  Lock& lock_;
};

bool isOfKind(JsonView value, MemberKind kind) {
  // Never true: there is no other kind.
  switch (kind) {
    case MemberKind::text:
      return value.text().has_value();
    case MemberKind::number:
      return value.wholeNumber().has_value();
    case MemberKind::textOrNumber:
      return value.text().has_value() || value.wholeNumber().has_value();
    case MemberKind::array:
      break;
  }
  return value.isArray();
}

bool has(const Request& request, const Member& member) {
  return isOfKind(request.data.member(member.name), member.kind);
}

// A row that stores a member needs "Data" itself, even if it needs no member of it.
bool hasWhatItNeeds(const HandlerRow& row, const Request& request) {
  return std::all_of(row.members.begin(), row.members.end(), [&](const Member& member) {
    return (member.keep == nullptr || request.data.isObject()) && (!member.needed || has(request, member));
  });
}

}  // namespace

void StoredMembers::store() const {
  for (const Member& member : members_) {
    if (member.keep != nullptr) {
      member.keep(session_, has(request_, member) ? request_.text(member.name) : std::string());
    }
  }
}

std::string Dispatcher::run(const Endpoint& endpoint, std::string_view packetText, ScriptHost& host) {
  // A copy: a script may change the variable that the caller's text lives in.
  const std::string received(packetText);
  const HeldLock held(*lock_);
  LogWriter log = logs_.openTraffic();
  const Result<std::string> message = decodePacket(received, log);
  std::string reply;
  if (const auto* failure = std::get_if<Failure>(&message)) {
    say(*failure, log);
    reply = received;
  } else {
    reply = replyTo(endpoint, std::get<std::string>(message), host, log);
  }
  Result<std::string> encoded = encodePacket(reply, log);
  if (const auto* failure = std::get_if<Failure>(&encoded)) {
    say(*failure, log);
    return {};
  }
  return std::get<std::string>(std::move(encoded));
}

std::string Dispatcher::replyTo(const Endpoint& endpoint, const std::string& message, ScriptHost& host,
                                LogWriter& log) {
  const Result<Request> read = requestIn(message);
  if (const auto* failure = std::get_if<Failure>(&read)) {
    say(*failure, log);
    if (failure->where == Failure::Where::output) {
      output_.print(
          failure->what);  // printed twice: for the request, and for its empty reply, which has no command either
    }
    return {};
  }
  const auto& request = std::get<Request>(read);
  Outcome outcome = carryOut(endpoint, request, host, log);
  if (outcome.failure && outcome.failure->where == Failure::Where::reply) {
    return replyText(request.command, {Json::object(), "1", std::move(outcome.failure->what)});
  }
  if (outcome.failure) {
    return errorReply(endpoint.failureText, request.command);
  }
  return outcome.reply ? replyText(request.command, std::move(*outcome.reply)) : std::string();
}

Outcome Dispatcher::carryOut(const Endpoint& endpoint, const Request& request, ScriptHost& host, LogWriter& log) {
  if (endpoint.applyReply != nullptr && request.command.find(replySuffix) != std::string::npos) {
    const StoredMembers none({}, request, session_);
    RequestCall call{request, host, log, none};
    return endpoint.applyReply(call, session_);
  }
  const auto row = std::find_if(endpoint.rows.begin(), endpoint.rows.end(),
                                [&](const HandlerRow& each) { return request.command == each.name; });
  if (row == endpoint.rows.end()) {
    return Outcome::refused();
  }
  const StoredMembers stored({row->members.begin(), row->members.end()}, request, session_);
  RequestCall call{request, host, log, stored};
  Outcome outcome = runRow(*row, call);
  if (outcome.failure) {
    say(*outcome.failure, log);
  }
  if (row->whenRefused != nullptr && !outcome.succeeded()) {
    row->whenRefused(call, session_);
  }
  return outcome;
}

Outcome Dispatcher::runRow(const HandlerRow& row, RequestCall& call) {
  try {
    call.stored.store();
    return hasWhatItNeeds(row, call.request) ? row.run(call, session_) : Outcome::refused();
  } catch (...) {
    return Outcome::refused(Failure::inBox(u8"格式有误"));
  }
}

void Dispatcher::say(const Failure& failure, LogWriter& log) {
  if (failure.where == Failure::Where::box) {
    messages_.show(failure.shown, MessageIcon::none);
  } else {
    vernoxa::say(failure, log, output_);
  }
}

}  // namespace vernoxa::inline dispatch
