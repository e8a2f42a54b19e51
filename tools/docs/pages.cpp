#include "pages.h"

#include <array>
#include <span>
#include <sstream>
#include <string_view>

#include "dispatch/handler.h"
#include "plugin/command_table.h"
#include "plugin/message_table.h"
#include "protocol_json.h"

namespace vernoxa {
namespace {

using Page = std::ostringstream;

constexpr const char* printed = "Printed by `./dev docs` from the tables in `src/plugin/`; do not edit.";

std::string code(std::string_view text) {
  return "`" + std::string(text) + "`";
}

// In a table's cell the bar has to be escaped.
std::string cell(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    escaped += c == '|' ? "\\|" : std::string(1, c);
  }
  return escaped;
}

std::string listed(const Calls& names) {
  std::string list;
  for (const char* name : names) {
    list += (list.empty() ? "" : ", ") + code(name);
  }
  return list;
}

// --- members -------------------------------------------------------------------------------------------------------

std::string kindOf(const Member& member) {
  constexpr std::array names = {"text", "whole number", "text or whole number", "array of texts"};
  return member.itemMembers != nullptr ? "array of objects" : names.at(static_cast<std::size_t>(member.kind));
}

std::string valuesOf(const Member& member) {
  if (member.values == nullptr || *member.values == '\0') {
    return "";
  }
  std::string values(member.values);
  for (std::size_t bar = values.find('|'); bar != std::string::npos; bar = values.find('|', bar + 5)) {
    values.replace(bar, 1, "`, `");
  }
  return " One of " + code(values) + ".";
}

void printRow(Page& page, const Member& member, const std::string& within) {
  const std::string name = std::string_view(member.name) == "*" ? within + "any other" : code(within + member.name);
  page << "| " << name << " | " << kindOf(member) << (member.needed ? "" : ", optional") << " | "
       << cell(member.meaning) << valuesOf(member) << " |\n";
  for (const Member& item : std::span(member.itemMembers, member.itemMemberCount)) {
    printRow(page, item, within + member.name + "[].");
  }
}

template <class Members>
void printMembers(Page& page, const char* title, const Members& members) {
  if (members.count == 0) {
    return;
  }
  page << "\n| " << title << " | Kind | Meaning |\n|---|---|---|\n";
  for (const Member& member : members) {
    printRow(page, member, "");
  }
}

// --- requests and messages -----------------------------------------------------------------------------------------

void printAnswer(Page& page, const HandlerRow& row) {
  const Answer& answer = row.answer;
  if (!answer.given) {
    page << "\nNot answered" << (answer.follows != nullptr ? "; " + code(answer.follows) + " follows" : "") << ".\n";
    return;
  }
  printMembers(page, "Member of the answer", answer.data);
  page << "\nAnswered with " << code(std::string(row.name) + "_EndResult");
  page << (answer.data.count > 0 ? "" : ", whose \"Data\" is empty");
  page << (answer.emptyErrInfo ? ", and an empty \"ErrInfo\" beside \"Result\".\n" : ".\n");
  if (answer.failure != nullptr) {
    page << "When it fails, \"ErrInfo\" " << (answer.failureInData ? "in \"Data\"" : "beside \"Result\"")
         << " says why: " << answer.failure << "\n";
  }
}

void printRequests(Page& page, const char* title, const char* door, std::span<const HandlerRow> rows) {
  page << "\n## " << title << "\n\nReceived through `" << door << "`.\n";
  for (const HandlerRow& row : rows) {
    page << "\n### " << row.name << "\n\n" << row.purpose << "\n";
    printMembers(page, "Member of \"Data\"", row.members);
    printAnswer(page, row);
    if (row.calls.count > 0) {
      page << "\nCalls " << listed(row.calls) << ".\n";
    }
  }
}

void printMessage(Page& page, const MessageRow& row) {
  page << "\n### " << row.name << (*row.form != '\0' ? ", " : "") << row.form << "\n\n" << row.purpose << "\n";
  printMembers(page, "Member of \"Data\"", row.data);
  printMembers(page, "Member of the answer that is read", row.answer);
  std::string envelope;
  for (const char c : std::string_view(row.envelope)) {
    envelope += c == ' ' ? "\", \"" : std::string(1, c);
  }
  page << "\nMembers in the order \"" << envelope << "\"" << (row.formatted ? ", printed with tabs and line ends" : "")
       << "; made by ";
  const char* separator = "";
  for (const char* command : row.senders) {
    page << separator << code(command);
    separator = ", ";
  }
  page << (row.way == MessageWay::ownConnection ? "; on a connection of its own.\n" : ".\n");
}

// --- commands ------------------------------------------------------------------------------------------------------

void printArguments(Page& page, std::span<const Argument> arguments) {
  if (arguments.empty()) {
    return;
  }
  page << "\n| Argument | Meaning |\n|---|---|\n";
  for (const Argument& argument : arguments) {
    page << "| " << code(argument.name) << (argument.optional ? ", optional" : "") << " | " << cell(argument.meaning)
         << " |\n";
  }
}

}  // namespace

std::string messagePage() {
  Page page;
  page << "# Messages\n\n"
       << printed << " For programs: [protocol.json](protocol.json).\n\n"
       << "A message is a JSON object with \"Command\" and \"Data\" in the code page. A member of a request that "
          "is "
          "not\noptional is needed: without it, or with one of another kind, nothing is evaluated and the reply is "
          "\"command error\"\n(\"command1 error\" to the link thread). A whole number may be a JSON number, whose "
          "fraction is "
          "cut off, or a text of decimal\ndigits. Members that are not listed are ignored.\n";
  printRequests(page, "What the companion asks", "packetParser", companionHandlers());
  printRequests(page, "What the link thread asks", "packetParserForPthread", threadHandlers());
  page << "\n## What the plug-in says\n\nSent on the connection of the host's scripts unless it is said otherwise; "
          "\"Result\" is \"0\" where there is one.\n";
  for (const MessageRow& row : messageTable()) {
    printMessage(page, row);
  }
  return page.str();
}

std::string commandPage() {
  Page page;
  page << "# Tcl commands of the plug-in\n\n"
       << printed << " In the order of registration.\n\n"
       << "A missing argument reads as the empty text. A command that ends in an exception gives Tcl the completion "
          "code -1 "
          "and an\nempty result, and leaves its name in the crash log.\n\n"
       << "| # | Command and arguments | What it is for | Carried out in `src/` |\n|---|---|---|---|\n";
  int position = 0;
  for (const CommandRow& row : commandTable()) {
    const std::string usage = usageOf(row);
    page << "| " << ++position << " | `" << row.name << (usage.empty() ? "" : " ") << usage << "` | " << row.purpose
         << " | " << row.file << " |\n";
  }
  page << "\n## Arguments and answers\n";
  for (const CommandRow& row : commandTable()) {
    page << "\n### " << row.name << "\n\n" << row.purpose << "\n";
    printArguments(page, {row.arguments.each.begin(), row.arguments.each.end()});
    if (row.arguments.without != nullptr) {
      page << "\nWithout arguments: " << row.arguments.without << "\n";
    }
    constexpr std::array answers = {"Answers nothing.", "Answers: ", "Answers a packet text: "};
    page << "\n" << answers.at(static_cast<std::size_t>(row.answer.kind)) << row.answer.meaning << "\n";
    if (row.calls.count > 0) {
      page << "\nCalls " << listed(row.calls) << ".\n";
    }
  }
  return page.str();
}

}  // namespace vernoxa
