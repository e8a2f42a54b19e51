// What the plug-in runs in the host's interpreter, whatever came in: only the procedures that belong to a message.
#include <array>
#include <span>

#include "plugin/command_table.h"
#include "plugin/request_table.h"
#include "recording_host_tcl.h"
#include "support/loaded_plug_in_tcl.h"
#include "target.h"
#include "text/json.h"
#include "wire/packet_text.h"

namespace vernoxa::fuzz {
namespace {

constexpr std::string_view packetParserName = "packetParser";
constexpr std::string_view packetParserForPthreadName = "packetParserForPthread";

void allow(Procedures& allowed, const Calls& calls) {
  allowed.insert(calls.begin(), calls.end());
}

Procedures proceduresOf(std::span<const HandlerRow> rows) {
  Procedures allowed;
  for (const HandlerRow& row : rows) {
    allow(allowed, row.calls);
  }
  return allowed;
}

// Those of one request; none for what is no request of the table.
Procedures proceduresOf(std::string_view message, std::span<const HandlerRow> rows) {
  const Json parsed = Json::parse(std::string(message)).document;
  const auto command = parsed.view().member("Command").text();
  Procedures allowed;
  for (const HandlerRow& row : rows) {
    if (command && *command == row.name) {
      allow(allowed, row.calls);
    }
  }
  return allowed;
}

Procedures proceduresOf(const plugin::CommandRow& command) {
  if (command.name == packetParserName) {
    return proceduresOf(plugin::companionHandlers());
  }
  if (command.name == packetParserForPthreadName) {
    return proceduresOf(plugin::threadHandlers());
  }
  Procedures allowed;
  allow(allowed, command.calls);
  return allowed;
}

constexpr std::array<const char*, 2> joinedProcedures = {"getGuid\"", "convertToSVG\""};

// A joined word is one that the host does not know: it goes to `unknown` with what follows it.
bool isJoined(const Words& words) {
  return words.size() > 1 && (words[1].starts_with(joinedProcedures[0]) || words[1].starts_with(joinedProcedures[1]));
}

void begin(LoadedPlugIn& loaded, RecordingHost& host) {
  loaded.furnish();
  loaded.beginSession();
  host.interp.calls.clear();
}

// First line: what the host answers; the rest is the message.
void packet(std::string_view input, std::string_view door, std::span<const HandlerRow> rows) {
  RecordingHost& host = recordingHost();
  host.answerWith(takeUntil(input, '\n'));
  LoadedPlugIn loaded;
  begin(loaded, host);
  const auto answer = host.interp.call({std::string(door), packetTextOf(input)});
  require(answer.status == commandDone, "a door answered with another status");
  require(loaded.fake.locks.held == 0, "the packet lock stayed held");
  require(messageOf(answer.text).valid, "the answer is no packet text");
  std::erase_if(host.interp.calls, isJoined);
  host.requireOnly(proceduresOf(input, rows));
}

std::string unescaped(std::string_view argument) {
  std::string text(argument);
  for (char& c : text) {
    c = c == '\x1E' ? '\n' : c == '\x1F' ? '\t' : c;
  }
  return text;
}

// The line's first word is a command's name, or its first byte chooses one.
const plugin::CommandRow& commandOf(std::string_view name) {
  for (const plugin::CommandRow& row : plugin::commandTable()) {
    if (name == row.name) {
      return row;
    }
  }
  const unsigned char choice = name.empty() ? '\0' : static_cast<unsigned char>(name.front());
  return plugin::commandTable()[choice % plugin::commandTable().size()];
}

Words wordsOf(const plugin::CommandRow& command, std::string_view line) {
  Words words = {command.name};
  while (!line.empty()) {
    words.push_back(unescaped(takeUntil(line, '\t')));
  }
  return words;
}

}  // namespace

void companionPacket(std::string_view input) {
  packet(input, packetParserName, plugin::companionHandlers());
}

void threadPacket(std::string_view input) {
  packet(input, packetParserForPthreadName, plugin::threadHandlers());
}

// First line: what the host answers; then one command a line, its arguments between tabs.
void commands(std::string_view input) {
  RecordingHost& host = recordingHost();
  host.answerWith(takeUntil(input, '\n'));
  LoadedPlugIn loaded;
  begin(loaded, host);
  Procedures allowed;
  while (!input.empty()) {
    std::string_view line = takeUntil(input, '\n');
    const plugin::CommandRow& command = commandOf(takeUntil(line, '\t'));
    allowed.merge(proceduresOf(command));
    const int status = host.interp.call(wordsOf(command, line)).status;
    require(status >= commandFailed && status <= commandError, "a command answered with another status");
    require(loaded.fake.locks.held == 0, "the packet lock stayed held");
  }
  std::erase_if(host.interp.calls, isJoined);
  host.requireOnly(allowed);
}

// The input is the module file that the companion names and the host's script then has placed.
void moduleFile(std::string_view input) {
  static const Words asked = {"packetParser",
                              packetTextOf(R"({"Command":"PlaceDSNModule","Data":{"sumPins":"1","price":"2",)"
                                           R"("dsnDatPath":"C:\\m.json","dsnBmpPath":"C:\\p.bmp","uploadResId":"7",)"
                                           R"("uploadUserId":"8","selfModule":"0"}})")};
  RecordingHost& host = recordingHost();
  host.answerWith("1");
  LoadedPlugIn loaded;
  begin(loaded, host);
  loaded.fake.files.addFile("C:\\m.json", input);
  loaded.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "library");
  loaded.fake.files.addFile("C:\\my.olb", "library");
  const auto answer = host.interp.call(asked);
  require(answer.status == commandDone, "the module's placement failed");
  require(messageOf(answer.text).message.find("_EndResult\",\"Result\":\"0\"") != std::string::npos,
          "a module changed the answer");
  require(host.interp.call({"placeMarketPart"}).status == commandDone, "the placement failed");
  Procedures allowed = proceduresOf(R"({"Command":"PlaceDSNModule"})", plugin::companionHandlers());
  allowed.merge(proceduresOf(commandOf("placeMarketPart")));
  host.requireOnly(allowed);
  require(loaded.fake.files.exists("C:\\my.olb"), "a library of the user's is gone");
  require(loaded.fake.files.exists("C:\\App\\config\\Resource\\Empty.olb"), "the base library is gone");
}

}  // namespace vernoxa::fuzz
