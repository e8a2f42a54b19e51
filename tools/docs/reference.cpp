// Prints the reference pages from the tables that the plug-in runs on, or tells which page is stale.
//
//   vernoxa_docs FOLDER          writes the pages
//   vernoxa_docs --check FOLDER  exit 1 when a page differs from what would be written
#include <array>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

#include "dispatch/handler.h"
#include "plugin/command_table.h"

namespace {

using namespace vernoxa;

std::string kindName(MemberKind kind) {
  constexpr std::array names = {"text", "whole number", "text or whole number", "array"};
  return names.at(static_cast<std::size_t>(kind));
}

void printMembers(std::ostream& page, const HandlerRow& row) {
  const char* separator = "";
  for (const Member& member : row.members) {
    if (member.use != MemberUse::none) {
      page << separator << '`' << member.name << "` (" << kindName(member.kind)
           << (member.use == MemberUse::optional ? ", optional)" : ")");
      separator = ", ";
    }
  }
  if (*separator == '\0') {
    page << "none";
  }
}

void printMessages(std::ostream& page, const char* title, const char* door, std::span<const HandlerRow> rows) {
  page << "\n## " << title << "\n\nReceived through `" << door << "`; the reply's name ends in `_EndResult`.\n\n"
       << "| Command | Members of \"Data\" | What it is for |\n|---|---|---|\n";
  for (const HandlerRow& row : rows) {
    page << "| `" << row.name << "` | ";
    printMembers(page, row);
    page << " | " << row.purpose << " |\n";
  }
}

std::string messageReference() {
  std::ostringstream page;
  page << "# Messages that the plug-in carries out\n\n"
       << "Printed by `./dev docs` from the tables in `src/plugin/` and `src/designs/`; do not edit.\n\n"
       << "A message is a JSON object with \"Command\" and \"Data\" in the code page (GBK). A member without a remark "
          "is needed:\nwithout it nothing is evaluated and the reply is \"command error\".\n";
  printMessages(page, "From the companion", "packetParser", companionHandlers());
  printMessages(page, "From the link thread", "packetParserForPthread", threadHandlers());
  return page.str();
}

std::string commandReference() {
  std::ostringstream page;
  page << "# Tcl commands of the plug-in\n\n"
       << "Printed by `./dev docs` from the table in `src/plugin/command_table.cpp`, in the order of registration; do "
          "not edit.\nA command that ends in an exception answers -1 and leaves its name in the crash log.\n\n"
       << "| # | Command and arguments | What it is for | Carried out in `src/` |\n|---|---|---|---|\n";
  int position = 0;
  for (const CommandRow& row : commandTable()) {
    page << "| " << ++position << " | `" << row.name << (*row.usage != '\0' ? " " : "") << row.usage << "` | "
         << row.role << " | " << row.file << " |\n";
  }
  return page.str();
}

struct Page {
  const char* name;
  std::string (*print)();
};

constexpr std::array pages = {Page{"commands.md", commandReference}, Page{"messages.md", messageReference}};

std::string contentOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

int main(int count, char** arguments) {
  const bool check = count == 3 && std::string_view(arguments[1]) == "--check";
  if (count != 2 && !check) {
    std::cerr << "usage: vernoxa_docs [--check] FOLDER\n";
    return 2;
  }
  const std::string folder = arguments[count - 1];
  bool stale = false;
  for (const Page& page : pages) {
    const std::string file = folder + "/" + page.name;
    if (!check) {
      std::ofstream(file, std::ios::binary) << page.print();
    } else if (contentOf(file) != page.print()) {
      std::cerr << file << " is stale: run ./dev docs\n";
      stale = true;
    }
  }
  return stale ? 1 : 0;
}
