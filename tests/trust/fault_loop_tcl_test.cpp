// Each call that can fail does so once, in every kept conversation: allocations, files, sockets, clocks, the host's
// procedures.
#include <gtest/gtest.h>
#include <tcl.h>

#include "plugin/command_table.h"
#include "plugin/start_up.h"
#include "support/table.h"
#include "text/json.h"
#include "text/text.h"
#include "trust/failing_memory.h"
#include "trust/trust_rig_tcl.h"
#include "wire/packet_text.h"

namespace vernoxa {
namespace {

struct Fault {
  const char* name;
  // Makes the n-th call fail; 0 ends that.
  void (*arm)(TrustHost&, TrustLoad&, int number);
  // How many of these calls there were since.
  int (*calls)(TrustHost&, TrustLoad&);
};

constexpr std::array faults = {
    Fault{"memory", [](TrustHost&, TrustLoad&, int number) { failAllocation(number); },
          [](TrustHost&, TrustLoad&) { return countedAllocations(); }},
    Fault{"file", [](TrustHost&, TrustLoad& load, int number) { load.fake.files.faults.failCall(number); },
          [](TrustHost&, TrustLoad& load) { return load.fake.files.faults.calls(); }},
    Fault{"socket", [](TrustHost&, TrustLoad& load, int number) { load.fake.sockets.faults.failCall(number); },
          [](TrustHost&, TrustLoad& load) { return load.fake.sockets.faults.calls(); }},
    Fault{"clock", [](TrustHost&, TrustLoad& load, int number) { load.fake.clock.faults.failCall(number); },
          [](TrustHost&, TrustLoad& load) { return load.fake.clock.faults.calls(); }},
    Fault{"procedure", [](TrustHost& host, TrustLoad&, int number) { host.faults.failCall(number); },
          [](TrustHost& host, TrustLoad&) { return host.faults.calls(); }},
};

// What the run without a fault answered, and how many message boxes it showed.
struct Good {
  std::vector<TrustHost::Answer> answers;
  std::size_t boxes = 0;
};

// A run of the plug-in; it says what is wrong with an answer, else "". `good` is filled by the run without a fault.
using Scenario = std::string (*)(TrustHost&, TrustLoad&, const KeptInput&, Good& good);

std::string commandOf(const std::string& message) {
  return std::string(Json::parse(message).document.member("Command").text().value_or(""));
}

// The answer of the run without a fault, or one of this request that owns up to the fault: a refusal, a failure, what
// it made of the host's own error, or a text that a message box has told is missing. Words are the door and the packet
// text.
std::string isPacketAnswer(const TrustHost& host, const TrustHost::Answer& answer, TrustLoad& load, const Words& words,
                           Good& good) {
  const std::size_t boxes = load.fake.messages.shown().size();
  if (good.answers.empty()) {
    good = {{answer}, boxes};
  }
  if (answer.status == commandFailed) {
    return load.crashes() == words[0] ? "" : "failed without its name in the crash log";
  }
  if (answer.status != commandDone) {
    return "status " + std::to_string(answer.status);
  }
  const DecodedPacket reply = messageOf(answer.text);
  if (!reply.valid) {
    return "no packet text: " + answer.text;
  }
  const std::string request = messageOf(words[1]).message;
  const Json message = Json::parse(reply.message).document;
  const bool named = commandOf(reply.message) == commandOf(request) + "_EndResult";
  const bool failed = message.member("Result").text() == std::string_view("1");
  const bool same = answer.text == good.answers.front().text;
  const bool refused = messageOf(good.answers.front().text).message.find("\"Result\":\t\"1\"") != std::string::npos;
  if (reply.message.empty() && (refused || boxes > good.boxes)) {
    return {};  // no memory to read whom a refusal is for, or to encode the reply, which a box tells
  }
  const bool echoed = reply.message == words[1] && boxes > 0;  // it could not be decoded, which a box tells
  return same || (named && (failed || host.erred || boxes > good.boxes)) || echoed
             ? ""
             : "not what it was: " + reply.message;
}

std::string runPacket(TrustHost& host, TrustLoad& load, const KeptInput& input, Good& good, const char* door) {
  const Words words = [&] {
    const EnoughMemory enough;
    return Words{door, packetTextOf(input.rest)};
  }();
  const TrustHost::Answer answer = host.call(words);
  const EnoughMemory enough;
  return isPacketAnswer(host, answer, load, words, good);
}

std::string runCompanionPacket(TrustHost& host, TrustLoad& load, const KeptInput& input, Good& good) {
  return runPacket(host, load, input, good, "packetParser");
}

std::string runThreadPacket(TrustHost& host, TrustLoad& load, const KeptInput& input, Good& good) {
  return runPacket(host, load, input, good, "packetParserForPthread");
}

// A command ends as without the fault, or fails with its name in the crash log.
std::string runCommands(TrustHost& host, TrustLoad& load, const KeptInput& input, Good& good) {
  const std::vector<Words> commands = [&] {
    const EnoughMemory enough;
    return commandsIn(input.rest);
  }();
  std::vector<TrustHost::Answer> answers;
  for (const Words& words : commands) {
    TrustHost::Answer answer = host.call(words);
    const EnoughMemory enough;
    answers.push_back(std::move(answer));
  }
  const EnoughMemory enough;
  if (good.answers.empty()) {
    good.answers = answers;
  }
  for (std::size_t index = 0; index < commands.size(); ++index) {
    const bool owned = answers[index].status == commandFailed && load.crashes().starts_with(commands[index].front());
    if (answers[index].status != good.answers[index].status && !owned) {
      return commands[index].front() + " gave status " + std::to_string(answers[index].status) +
             ", crash log: " + load.crashes();
    }
  }
  return {};
}

// The module file that the companion names, and its placement by the host's script.
std::string runModule(TrustHost& host, TrustLoad& load, const KeptInput& input, Good& good) {
  const Words asked = [&] {
    const EnoughMemory enough;
    load.fake.files.addFile("C:\\Mods\\m.json", input.answer + "\n" + input.rest);
    load.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "library");
    host.answer = "1";
    return Words{"packetParser", packetTextOf(R"({"Command":"PlaceDSNModule","Data":{"sumPins":"1","price":"2",)"
                                              R"("dsnDatPath":"C:\\Mods\\m.json","dsnBmpPath":"","uploadResId":"7",)"
                                              R"("uploadUserId":"8","selfModule":"0"}})")};
  }();
  const Words placed = [] {
    const EnoughMemory enough;
    return Words{"placeMarketPart"};
  }();
  const TrustHost::Answer answer = host.call(asked);
  host.call(placed);
  const EnoughMemory enough;
  const std::string base = load.fake.files.bytes("C:\\App\\config\\Resource\\Empty.olb");
  return base == "library" ? isPacketAnswer(host, answer, load, asked, good) : "the base library is " + base;
}

// A file of the user's that the companion names as the module, by any of its spellings: it is there after the placement
// and after the clearing away.
std::string runUsersFile(TrustHost& host, TrustLoad& load, const KeptInput& input, Good& good) {
  const Words asked = [&] {
    const EnoughMemory enough;
    load.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "library");
    Json data = Json::object();
    data.add("dsnDatPath", input.rest);
    Json message = Json::object();
    message.add("Command", "PlaceDSNModule");
    message.add("Data", std::move(data));
    return Words{"packetParser", packetTextOf(message.printUnformatted())};
  }();
  const TrustHost::Answer answer = host.call(asked);
  for (const char* const command : {"placeMarketPart", "removeDatFile"}) {
    const Words words = [&] {
      const EnoughMemory enough;
      return Words{command};
    }();
    host.call(words);
  }
  const EnoughMemory enough;
  return isPacketAnswer(host, answer, load, asked, good);
}

// The process goes on after the fault: the next packet is answered as ever.
std::string nextConversation(TrustHost& host) {
  host.answer = "{C:/a.dsn P1}";
  const auto answer = host.call({"packetParser", packetTextOf(R"({"Command":"GetActiveProPages"})")});
  return messageOf(answer.text).message;
}

constexpr const char* nextReply = R"({"Data":{"ErrInfo":"","Open":[{"ProjectPath":"C:/a.dsn","Pages":["P1"]}]},)"
                                  R"("Command":"GetActiveProPages_EndResult","Result":"0"})";

class FaultLoop : public testing::Test {
 protected:
  // Gives how many of these calls there were in the run.
  int runOnce(const Fault& fault, int number, const KeptInput& input, Scenario scenario, Good& good) {
    TrustLoad load;
    load.beginSession();
    host_.answer = input.answer;
    fault.arm(host_, load, number);
    host_.erred = false;
    const std::string wrong = scenario(host_, load, input, good);
    const int calls = fault.calls(host_, load);
    fault.arm(host_, load, 0);
    EXPECT_EQ(wrong, "");
    EXPECT_EQ(load.fake.locks.held, 0);
    EXPECT_FALSE(load.fake.sockets.misused());
    EXPECT_EQ(load.harmToTheUsersFiles(), "");
    EXPECT_EQ(nextConversation(host_), nextReply);
    load.plugIn.session.reset();
    EXPECT_EQ(load.fake.sockets.stillOpen(), 0);
    EXPECT_EQ(load.fake.sockets.started(), 0);
    return calls;
  }

  void runAll(const std::vector<KeptInput>& inputs, Scenario scenario) {
    int injected = 0;
    for (const KeptInput& input : inputs) {
      Good good;
      runOnce(faults.front(), 0, input, scenario, good);
      for (const Fault& fault : faults) {
        for (int number = 1;; ++number) {
          SCOPED_TRACE(input.name + ", " + fault.name + " " + std::to_string(number));
          if (runOnce(fault, number, input, scenario, good) < number || HasFailure()) {
            break;
          }
          ++injected;
        }
      }
    }
    EXPECT_GT(injected, 100);
    RecordProperty("faults", injected);
  }

  TrustHost host_;
};

TEST_F(FaultLoop, CompanionPackets) {
  runAll(keptInputs("companion_packet"), runCompanionPacket);
}

TEST_F(FaultLoop, ThreadPackets) {
  runAll(keptInputs("thread_packet"), runThreadPacket);
}

TEST_F(FaultLoop, Modules) {
  runAll(keptInputs("module_file"), runModule);
}

TEST_F(FaultLoop, Commands) {
  runAll(keptInputs("commands"), runCommands);
}

TEST_F(FaultLoop, UsersFiles) {
  std::vector<KeptInput> inputs;
  for (const char* const path : {"C:\\job\\a.dsn", "c:/JOB/A.OPJ", "C:\\job\\my.olb. .", "C:\\job\\x\\..\\a_0.OBK",
                                 "C:\\job\\a.dsn\\.", "C:/job/a.opj/x/..", "C:\\job\\a.dsn\\"}) {
    inputs.push_back({path, "1", path});
  }
  runAll(inputs, runUsersFile);
}

// A record for which the memory runs out leaves nothing half done: the host's next try is whole.
TEST_F(FaultLoop, ARecordThatFailedIsSentAgain) {
  // What comes before, the record, one that belongs to it, and what finishes; = stands between words.
  for (const auto& row : rowsOf(R"(
      initSVGList; addToPageList=Page P 1 2 K | addToLibList=Name S | addToLibList=Line 1 2 3 4 5 6 7 | outputSVGFile=S P x y K
      initSVGList; addToPageList=Page P 1 2 K; addToLibList=Name S | addToLibList=Name T | addToLibList=Line 1 2 3 4 5 6 7 | outputSVGFile=S P x y K
      initSVGList; addToPageList=Page P 1 2 K | addToPageList=Text 1 2 {A\r\nB\r\nC} 0 x -9 0 | addToPageList=Line 1 2 3 4 5 6 7 | outputSVGFile=S P x y K
      initSVGList; addToPageList=Schematic S; addToPageList=Page P 1 2 K | addToPageList=Page Q 3 4 L | addToPageList=Line 1 2 3 4 5 6 7 | outputSVGFile=S Q x y L
      initGraphicFile | addGraphicLibList=Text 1 2 {A\r\nB} 0 x -9 0 | addGraphicLibList=Line 1 2 3 4 5 6 7 | outputGraphicFile=g
      initGraphicFile; addGraphicLibList=Name S | addGraphicLibList=Name T | addGraphicLibList=Line 1 2 3 4 5 6 7 | outputGraphicFile=g
      initMarketFile; addMarketLibList=Name R Part 1 2 3 4 1 A | addMarketLibList=Name S Part 1 2 3 4 1 A | addMarketLibList=PartProperty Value 10k | outputMarketFile=0=1=2=3
      initMarketFile; addMarketPartList=Part 1 2 3 4 R | addMarketPartList=Part 5 6 7 8 S | addMarketPartList=Property Value 10k | outputMarketFile=0=1=2=3
      )")) {
    const auto call = [this](const std::string& text) {
      return host_.call(splitFields(replaceAll(text, "\\r\\n", "\r\n"), '=')).status;
    };
    std::string good;
    for (int number = 0;; ++number) {
      SCOPED_TRACE(row[1] + ", allocation " + std::to_string(number));
      TrustLoad load;
      load.fake.files.addFolder("C:\\App\\Cache\\Output");
      load.beginSession();
      for (const std::string& before : splitItems(replaceAll(row[0], "; ", ";"), ';')) {
        call(before);
      }
      const Words record = splitFields(replaceAll(row[1], "\\r\\n", "\r\n"), '=');
      failAllocation(number);
      const int status = host_.call(record).status;
      const int calls = countedAllocations();
      failAllocation(0);
      if (status == commandFailed) {
        call(row[1]);
      }
      call(row[2]);
      call(row[3]);
      std::string made;
      for (const std::string& path : load.fake.files.paths()) {
        made += path.find("catchLog") == std::string::npos ? path + load.fake.files.bytes(path) : "";
      }
      good = number == 0 ? made : good;
      EXPECT_EQ(made, good);
      if (number > calls || HasFailure()) {
        break;
      }
    }
  }
}

// A load that fails half-way leaves an editor that works, and the next load is whole.
TEST_F(FaultLoop, StartUp) {
  int injected = 0;
  for (const Fault& fault : faults) {
    for (int number = 1;; ++number) {
      SCOPED_TRACE(std::string(fault.name) + " " + std::to_string(number));
      TrustLoad load;
      load.fake.processes.list = {{"System", 0}, {"Capture.exe", 7}};
      fault.arm(host_, load, number);
      plugin::startUp(host_.interp(), load.plugIn);
      const int calls = fault.calls(host_, load);
      fault.arm(host_, load, 0);
      EXPECT_TRUE(load.crashes().empty() || load.crashes() == "Vernoxa_Init" ||
                  load.crashes() == "GetProcessidFromName" || load.crashes().find("Orcad") != std::string::npos)
          << load.crashes();
      EXPECT_EQ(load.fake.processes.folder, "D:\\Work");
      for (const plugin::CommandRow& row : plugin::commandTable()) {
        EXPECT_GE(host_.call({row.name}).status, commandFailed);
      }
      plugin::startUp(host_.interp(), load.plugIn);
      EXPECT_EQ(nextConversation(host_), nextReply);
      EXPECT_EQ(load.harmToTheUsersFiles(), "");
      if (calls < number || HasFailure()) {
        break;
      }
      ++injected;
    }
  }
  EXPECT_GT(injected, 30);
  RecordProperty("faults", injected);
}

}  // namespace
}  // namespace vernoxa
