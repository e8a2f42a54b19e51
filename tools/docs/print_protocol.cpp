// Prints protocol.json from the tables that the plug-in runs on, or tells whether it is stale.
//
//   vernoxa_docs FILE          writes it
//   vernoxa_docs --check FILE  exit 1 when it differs from what would be written
#include <algorithm>
#include <array>
#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "link/socket_client.h"
#include "plugin/command_table.h"
#include "plugin/host_procedures.h"
#include "plugin/message_table.h"
#include "plugin/request_table.h"
#include "text/json.h"
#include "wire/envelope.h"

namespace vernoxa {
namespace {

Json null() {
  return Json::parse("null").document;
}

Json stringOrNull(const char* text) {
  return text != nullptr ? Json::string(text) : null();
}

template <class Items, class Print>
Json listOf(const Items& items, Print print) {
  Json list = Json::array();
  for (const auto& item : items) {
    list.append(print(item));
  }
  return list;
}

template <class Names>
Json namesOf(const Names& names) {
  return listOf(names, [](const char* name) { return Json::string(name); });
}

Json piecesOf(std::string_view text, char separator) {
  Json pieces = Json::array();
  std::size_t end = 0;
  do {
    end = text.find(separator);
    pieces.append(Json::string(text.substr(0, end)));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  } while (end != std::string_view::npos);
  return pieces;
}

const char* kindName(MemberKind kind) {
  constexpr std::array names = {"text", "number", "textOrNumber", "array"};
  return names.at(static_cast<std::size_t>(kind));
}

Json memberJson(const Member& member);

Json itemsOf(const Member& member) {
  Json items = Json::object();
  items.add("kind", member.itemMembers != nullptr ? "object" : "text");
  if (member.itemMembers != nullptr) {
    items.add("members", listOf(std::span(member.itemMembers, member.itemMemberCount), memberJson));
  }
  return items;
}

Json memberJson(const Member& member) {
  Json json = Json::object();
  json.add("name", member.name);
  json.add("kind", kindName(member.kind));
  json.add("needed", Json::boolean(member.needed));
  if (member.keep != nullptr) {
    json.add("stored", Json::boolean(true));
  }
  json.add("meaning", member.meaning);
  if (member.values != nullptr) {
    json.add("values", piecesOf(member.values, '|'));
  }
  if (member.kind == MemberKind::array) {
    json.add("items", itemsOf(member));
  }
  return json;
}

Json argumentJson(const Argument& argument) {
  Json json = Json::object();
  json.add("name", argument.name);
  json.add("optional", Json::boolean(argument.optional));
  json.add("meaning", argument.meaning);
  return json;
}

Json failureOf(const Answer& answer) {
  if (answer.failure == nullptr) {
    return null();
  }
  Json failure = Json::object();
  failure.add("errInfoIn", answer.failureInData ? "Data" : "message");
  failure.add("errInfo", answer.failure);
  return failure;
}

Json answerOf(const Answer& answer) {
  if (!answer.given) {
    return null();
  }
  Json json = Json::object();
  json.add("data", listOf(answer.data, memberJson));
  json.add("emptyErrInfo", Json::boolean(answer.emptyErrInfo));
  json.add("failure", failureOf(answer));
  return json;
}

void addRequests(Json& list, const char* side, const char* endpoint, const char* refusal,
                 std::span<const HandlerRow> rows) {
  for (const HandlerRow& row : rows) {
    Json json = Json::object();
    json.add("name", row.name);
    json.add("side", side);
    json.add("endpoint", endpoint);
    json.add("refusal", refusal);
    json.add("purpose", row.purpose);
    json.add("members", listOf(row.members, memberJson));
    json.add("calls", namesOf(row.calls));
    json.add("answer", answerOf(row.answer));
    json.add("followedBy", stringOrNull(row.answer.follows));
    list.append(std::move(json));
  }
}

Json requests() {
  Json list = Json::array();
  addRequests(list, "companion", "packetParser", "command error", plugin::companionHandlers());
  addRequests(list, "linkThread", "packetParserForPthread", "command1 error", plugin::threadHandlers());
  return list;
}

Json messageJson(const plugin::MessageRow& row) {
  Json json = Json::object();
  json.add("name", row.name);
  json.add("form", row.form);
  json.add("purpose", row.purpose);
  json.add("sentBy", namesOf(row.senders));
  json.add("connection", row.way == plugin::MessageWay::ownConnection ? "own" : "host");
  json.add("printed", row.formatted ? "formatted" : "plain");
  json.add("envelope", piecesOf(row.envelope, ' '));
  json.add("data", listOf(row.data, memberJson));
  json.add("answer", row.answer.count > 0 ? listOf(row.answer, memberJson) : null());
  return json;
}

Json sentBy(std::string_view command) {
  Json names = Json::array();
  for (const plugin::MessageRow& row : plugin::messageTable()) {
    if (std::find(row.senders.begin(), row.senders.end(), command) != row.senders.end()) {
      names.append(Json::string(row.name));
    }
  }
  return names;
}

// Optional arguments between question marks; all of them when none need be given.
std::string usageOf(const plugin::CommandRow& row) {
  std::string names;
  for (const Argument& argument : row.arguments.each) {
    const std::string name = argument.optional ? "?" + std::string(argument.name) + "?" : argument.name;
    names += (names.empty() ? "" : " ") + name;
  }
  return row.arguments.without != nullptr ? "?" + names + "?" : names;
}

Json commandJson(const plugin::CommandRow& row) {
  constexpr std::array kinds = {"nothing", "plain", "packetText"};
  Json answer = Json::object();
  answer.add("kind", kinds.at(static_cast<std::size_t>(row.answer.kind)));
  answer.add("meaning", row.answer.meaning);
  Json json = Json::object();
  json.add("name", row.name);
  json.add("usage", usageOf(row));
  json.add("purpose", row.purpose);
  json.add("arguments", listOf(row.arguments.each, argumentJson));
  json.add("withoutArguments", stringOrNull(row.arguments.without));
  json.add("answer", std::move(answer));
  json.add("calls", namesOf(row.calls));
  json.add("sends", sentBy(row.name));
  return json;
}

// The names of the rows that may call a procedure.
template <class Rows>
Json callersIn(const Rows& rows, std::string_view procedure) {
  Json names = Json::array();
  for (const auto& row : rows) {
    if (std::find(row.calls.begin(), row.calls.end(), procedure) != row.calls.end()) {
      names.append(Json::string(row.name));
    }
  }
  return names;
}

Json procedureJson(const plugin::HostProcedure& row) {
  Json callers = Json::object();
  callers.add("load", Json::boolean(row.atLoad));
  callers.add("companion", callersIn(plugin::companionHandlers(), row.name));
  callers.add("linkThread", callersIn(plugin::threadHandlers(), row.name));
  callers.add("commands", callersIn(plugin::commandTable(), row.name));
  Json json = Json::object();
  json.add("name", row.name);
  json.add("purpose", row.purpose);
  json.add("arguments", listOf(row.arguments, argumentJson));
  json.add("answer", row.answer);
  json.add("calledBy", std::move(callers));
  return json;
}

// How the other ends are reached, and what a refused request is answered with.
Json linkJson() {
  Json json = Json::object();
  json.add("address", link::localAddress);
  json.add("companionPort", Json::number(link::companionPort));
  json.add("hostPort", Json::number(link::hostPort));
  json.add("frame", "The packet text's length in four bytes, unsigned and little-endian, then the packet text.");
  json.add("packetText",
           "Each byte of the message as two hexadecimal digits, lower case when the plug-in writes them.");
  json.add("message", "A JSON object, its texts in the code page of the machine's Windows, such as 936.");
  json.add("replySuffix", std::string(replySuffix));
  return json;
}

// UTF-8, with a line end at its end. docs/protocol.schema.json says what it holds.
std::string protocolJson() {
  Json json = Json::object();
  json.add("$schema", "protocol.schema.json");
  json.add("link", linkJson());
  json.add("requests", requests());
  json.add("messages", listOf(plugin::messageTable(), messageJson));
  json.add("commands", listOf(plugin::commandTable(), commandJson));
  json.add("procedures", listOf(plugin::hostProcedures(), procedureJson));
  return json.printFormatted() + "\n";
}

}  // namespace
}  // namespace vernoxa

int main(int count, char** arguments) {
  const bool check = count == 3 && std::string_view(arguments[1]) == "--check";
  if (count != 2 && !check) {
    std::cerr << "usage: vernoxa_docs [--check] FILE\n";
    return 2;
  }
  const char* const file = arguments[count - 1];
  const std::string document = vernoxa::protocolJson();
  if (!check) {
    std::ofstream(file, std::ios::binary) << document;
    return 0;
  }
  std::ifstream stream(file, std::ios::binary);
  if (std::string(std::istreambuf_iterator<char>(stream), {}) != document) {
    std::cerr << file << " is stale: run ./dev docs\n";
    return 1;
  }
  return 0;
}
