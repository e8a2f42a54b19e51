// What the plug-in runs in the host's interpreter, whatever came in: only the procedures that belong to a message.
#include <tcl.h>

#include <algorithm>
#include <functional>
#include <set>
#include <span>

#include "plugin/command_table.h"
#include "plugin/request_table.h"
#include "support/loaded_plug_in_tcl.h"
#include "target.h"
#include "text/json.h"
#include "wire/packet_text.h"

namespace vernoxa::fuzz {
namespace {

// Names of the host's procedures.
using Procedures = std::set<std::string, std::less<>>;

bool variableRead = false;

char* noteRead(ClientData, Tcl_Interp*, const char*, const char*, int) {
  variableRead = true;
  return nullptr;
}

Evaluation listOf(const Words& words) {
  std::vector<const char*> elements;
  for (std::size_t index = 1; index < words.size(); ++index) {
    elements.push_back(words[index].c_str());
  }
  char* const merged = Tcl_Merge(static_cast<int>(elements.size()), elements.data());
  const std::string text = merged;
  Tcl_Free(merged);
  return {true, text};
}

// An interpreter that knows nothing but the plug-in's commands. One for all inputs: making one takes longer than most.
struct Host {
  Host() {
    interp.recordEverything();
    interp.define("unknown", [this](const Words&) { return Evaluation{true, answer}; });
    interp.define("list", listOf);
    for (const char* const name : {"evil", "a", "x"}) {
      Tcl_SetVar(interp.get(), name, "value", TCL_GLOBAL_ONLY);
      Tcl_TraceVar(interp.get(), name, TCL_GLOBAL_ONLY | TCL_TRACE_READS, noteRead, nullptr);
    }
    plugin::registerCommands(interp.get());
  }

  TclInterp interp;
  std::string answer;  // of every procedure of the host
};

class Run : public LoadedPlugIn {
 public:
  explicit Run(std::string_view answer) {
    furnish();
    beginSession();
    host().answer = answer;
    host().interp.calls.clear();
  }

  TclInterp::Evaluated call(const Words& words) {
    TclInterp::Evaluated answer = host().interp.call(words);
    require(fake.locks.held == 0, "the packet lock stayed held");
    return answer;
  }
  // Every recorded call must be one of these or Tcl's own `list`. A procedure of the host is not defined here: it
  // arrives at `unknown`, whose first argument is its name, or that name joined with an argument.
  static void requireOnly(const Procedures& allowed) {
    require(!variableRead, "a variable was read");
    for (const Words& words : host().interp.calls) {
      const std::string name = words.size() > 1 ? words[1] : "";
      require(words.front() == "list" || allowed.contains(name) || name.starts_with("getGuid\"") ||
                  name.starts_with("convertToSVG\""),
              "evaluated: " + words.front() + " " + name);
    }
  }

 private:
  static Host& host() {
    static Host one;
    return one;
  }
};

// Those of all requests of a table, or of one.
Procedures proceduresOf(std::span<const HandlerRow> rows, const std::string* request = nullptr) {
  Procedures allowed;
  for (const HandlerRow& row : rows) {
    if (request == nullptr || *request == row.name) {
      allowed.insert(row.calls.begin(), row.calls.end());
    }
  }
  return allowed;
}

Procedures proceduresOf(const plugin::CommandRow& command) {
  const std::string_view name = command.name;
  return name == "packetParser"             ? proceduresOf(plugin::companionHandlers())
         : name == "packetParserForPthread" ? proceduresOf(plugin::threadHandlers())
                                            : Procedures(command.calls.begin(), command.calls.end());
}

// First line: what the host answers; the rest is the message.
void packet(std::string_view input, const char* door, std::span<const HandlerRow> rows) {
  Run run(takeUntil(input, '\n'));
  const auto answer = run.call({door, packetTextOf(input)});
  require(answer.status == commandDone, "a door answered with another status");
  require(messageOf(answer.text).valid, "the answer is no packet text");
  const Json message = Json::parse(std::string(input)).document;
  const std::string command(message.view().member("Command").text().value_or(""));
  Run::requireOnly(proceduresOf(rows, &command));
}

// The line's first word is a command's name, or its first byte chooses one.
const plugin::CommandRow& commandOf(std::string_view name) {
  const auto table = plugin::commandTable();
  const auto named = std::ranges::find(table, name, &plugin::CommandRow::name);
  const unsigned char choice = name.empty() ? '\0' : static_cast<unsigned char>(name.front());
  return named != table.end() ? *named : table[choice % table.size()];
}

}  // namespace

void companionPacket(std::string_view input) {
  packet(input, "packetParser", plugin::companionHandlers());
}

void threadPacket(std::string_view input) {
  packet(input, "packetParserForPthread", plugin::threadHandlers());
}

// First line: what the host answers; then one command a line, its arguments between tabs.
void commands(std::string_view input) {
  Run run(takeUntil(input, '\n'));
  Procedures allowed;
  while (!input.empty()) {
    std::string_view line = takeUntil(input, '\n');
    const plugin::CommandRow& command = commandOf(takeUntil(line, '\t'));
    Words words = {command.name};
    while (!line.empty()) {
      std::string& word = words.emplace_back(takeUntil(line, '\t'));
      std::ranges::replace(word, '\x1E', '\n');
      std::ranges::replace(word, '\x1F', '\t');
    }
    allowed.merge(proceduresOf(command));
    const int status = run.call(words).status;
    require(status >= commandFailed && status <= commandError, "a command answered with another status");
  }
  Run::requireOnly(allowed);
}

// The input is the module file that the companion names and the host's script then has placed.
void moduleFile(std::string_view input) {
  static const std::string request = "PlaceDSNModule";
  Run run("1");
  run.fake.files.addFile("C:\\m.json", input);
  run.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "library");
  run.fake.files.addFile("C:\\my.olb", "library");
  const auto answer = run.call(
      {"packetParser",
       packetTextOf(R"({"Command":"PlaceDSNModule","Data":{"sumPins":"1","price":"2","dsnDatPath":"C:\\m.json",)"
                    R"("dsnBmpPath":"C:\\p.bmp","uploadResId":"7","uploadUserId":"8","selfModule":"0"}})")});
  require(answer.status == commandDone, "the module's placement failed");
  require(messageOf(answer.text).message.find("_EndResult\",\"Result\":\"0\"") != std::string::npos,
          "a module changed the answer");
  require(run.call({"placeMarketPart"}).status == commandDone, "the placement failed");
  Procedures allowed = proceduresOf(plugin::companionHandlers(), &request);
  allowed.merge(proceduresOf(commandOf("placeMarketPart")));
  Run::requireOnly(allowed);
  require(run.fake.files.exists("C:\\my.olb"), "a library of the user's is gone");
  require(run.fake.files.exists("C:\\App\\config\\Resource\\Empty.olb"), "the base library is gone");
}

}  // namespace vernoxa::fuzz
