#include "dispatch/dispatcher.h"

#include <algorithm>

#include "designs/file_status.h"
#include "dispatch/services.h"
#include "system/log.h"
#include "system/user_messages.h"
#include "system/world.h"
#include "wire/envelope.h"

namespace vernoxa {
namespace {

bool isOfKind(JsonView value, MemberKind kind) {
  switch (kind) {
    case MemberKind::text:
      return value.text().has_value();
    case MemberKind::number:
      return value.wholeNumber().has_value();
    case MemberKind::textOrNumber:
      return value.text().has_value() || value.wholeNumber().has_value();
    case MemberKind::array:
      return value.isArray();
  }
  return false;
}

// The companion's answer names the folder of the project that is open: the cache folders follow it.
void takeAnswer(const Request& request, Services& services) {
  const auto path = request.data.member("Path").text();
  if (request.command == "FileStatus_EndResult" && path && !path->empty()) {
    followProject(services, *path);
  }
}

void storeMembers(const HandlerRow& row, const Request& request, PlacementContext& placement) {
  for (const Member& member : row.members) {
    if (member.stored != nullptr) {
      const bool usable = isOfKind(request.data.member(member.name), member.kind);
      placement.*member.stored = usable ? request.text(member.name) : std::string();
    }
  }
}

// What is stored comes from "Data", which must be there then, whatever it lacks.
bool hasWhatIsNeeded(const HandlerRow& row, const Request& request) {
  return std::all_of(row.members.begin(), row.members.end(), [&](const Member& member) {
    return (member.stored == nullptr || request.data.isObject()) &&
           (!member.needed || isOfKind(request.data.member(member.name), member.kind));
  });
}

bool isRefusal(const Outcome& outcome) {
  return outcome.status != handled || !outcome.reply || outcome.reply->result != "0";
}

Outcome runHandler(const HandlerRow& row, const Request& request, HandlerContext& context) {
  try {
    storeMembers(row, request, context.services.state.placement);
    return hasWhatIsNeeded(row, request) ? row.run(request, context) : Outcome{stoppedEarly, std::nullopt};
  } catch (...) {
    context.services.world.messages.show(u8"格式有误", MessageIcon::none);
    return {stoppedEarly, std::nullopt};
  }
}

}  // namespace

std::string Request::text(std::string_view member) const {
  const JsonView value = data.member(member);
  if (const auto text = value.text()) {
    return std::string(*text);
  }
  const auto number = value.wholeNumber();
  return number ? std::to_string(*number) : std::string();
}

std::string replyText(const std::string& command, Reply reply) {
  Json message = Json::object();
  message.add("Data", std::move(reply.data));
  message.add("Command", command + std::string(replySuffix));
  message.add("Result", reply.result);
  if (reply.errInfo) {
    message.add("ErrInfo", *reply.errInfo);
  }
  return message.printUnformatted();
}

int dispatch(std::span<const HandlerRow> rows, Answers answers, const std::string& message, std::string& reply,
             ScriptHost& host, Services& services) {
  LogWriter log = services.logs.openTraffic();
  const Json parsed = parseMessage(message, services);
  if (!parsed) {
    return notUnderstood;
  }
  const auto command = commandOf(parsed.view(), services.world.output);
  if (!command) {
    return stoppedEarly;
  }
  const Request request{*command, parsed.view(), parsed.member("Data")};
  if (answers == Answers::accepted && command->find(replySuffix) != std::string::npos) {
    takeAnswer(request, services);
    return handled;
  }
  const auto row =
      std::find_if(rows.begin(), rows.end(), [&](const HandlerRow& each) { return *command == each.name; });
  if (row == rows.end()) {
    return notUnderstood;
  }
  HandlerContext context{host, services, log};
  Outcome outcome = runHandler(*row, request, context);
  if (row->placing && isRefusal(outcome)) {
    services.state.placement.placeState = 0;
  }
  if (outcome.reply) {
    reply = replyText(*command, std::move(*outcome.reply));
  }
  return outcome.status;
}

}  // namespace vernoxa
