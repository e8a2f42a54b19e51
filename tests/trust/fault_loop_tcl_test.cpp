// Calls that can fail do so once, in every kept conversation: memory, files, sockets, clocks, the host's procedures.
#include <gtest/gtest.h>

#include <functional>

#include "plugin/command_table.h"
#include "support/soak.h"
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
  Faults& (*of)(TrustHost&, TrustLoad&);
};

constexpr std::array faults = {
    Fault{"memory", [](TrustHost&, TrustLoad&) -> Faults& { return memoryFaults; }},
    Fault{"file", [](TrustHost&, TrustLoad& load) -> Faults& { return load.fake.files.faults; }},
    Fault{"socket", [](TrustHost&, TrustLoad& load) -> Faults& { return load.fake.sockets.faults; }},
    Fault{"clock", [](TrustHost&, TrustLoad& load) -> Faults& { return load.fake.clock.faults; }},
    Fault{"procedure", [](TrustHost& host, TrustLoad&) -> Faults& { return host.faults; }},
};

constexpr const char* baseLibrary = "C:\\App\\config\\Resource\\Empty.olb";

std::string commandOf(const std::string& message) {
  return std::string(Json::parse(message).document.member("Command").text().value_or(""));
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
  // A run of the plug-in; it says what is wrong with an answer, else "".
  using Scenario = std::function<std::string(TrustLoad&, const KeptInput&)>;

  // The answer of the run without a fault, or one of this request that owns up to the fault: a refusal, a failure, what
  // it made of the host's own error, or a text that a message box has told is missing.
  std::string askThroughDoor(TrustLoad& load, const char* door, const std::string& request) {
    const std::string packet = packetTextOf(request);
    const TrustHost::Answer answer = host_.call({door, packet});
    const std::size_t boxes = load.fake.messages.shown().size();
    if (good_.empty()) {
      good_ = {answer};
      goodBoxes_ = boxes;
    }
    if (answer.status == commandFailed) {
      return load.crashes() == door ? "" : "failed without its name in the crash log";
    }
    if (answer.status != commandDone) {
      return "status " + std::to_string(answer.status);
    }
    const DecodedPacket reply = messageOf(answer.text);
    if (!reply.valid) {
      return "no packet text: " + answer.text;
    }
    const bool named = commandOf(reply.message) == commandOf(request) + "_EndResult";
    const bool failed = Json::parse(reply.message).document.member("Result").text() == std::string_view("1");
    const bool same = answer.text == good_.front().text;
    const bool refused = messageOf(good_.front().text).message.find("\"Result\":\t\"1\"") != std::string::npos;
    if (reply.message.empty() && (refused || boxes > goodBoxes_)) {
      return {};  // no memory to read whom a refusal is for, or to encode the reply, which a box tells
    }
    const bool echoed = reply.message == packet && boxes > 0;  // it could not be decoded, which a box tells
    return same || (named && (failed || host_.erred || boxes > goodBoxes_)) || echoed
               ? ""
               : "not what it was: " + reply.message;
  }

  // Gives how many of these calls there were in the run.
  int runOnce(const Fault& fault, int number, const KeptInput& input, const Scenario& scenario) {
    TrustLoad load;
    load.fake.files.addFile(baseLibrary, "library");
    load.beginSession();
    host_.answer = input.answer;
    host_.erred = false;
    Faults& struck = fault.of(host_, load);
    struck.failCall(number);
    const std::string wrong = scenario(load, input);
    const int calls = struck.calls();
    struck.failCall(0);
    EXPECT_EQ(wrong, "");
    EXPECT_EQ(load.fake.locks.held, 0);
    EXPECT_FALSE(load.fake.sockets.misused());
    EXPECT_EQ(load.harmToTheUsersFiles(), "");
    EXPECT_EQ(load.fake.files.bytes(baseLibrary), "library");
    EXPECT_EQ(nextConversation(host_), nextReply);
    load.plugIn.session.reset();
    EXPECT_EQ(load.fake.sockets.stillOpen(), 0);
    EXPECT_EQ(load.fake.sockets.started(), 0);
    return calls;
  }

  // Strikes each call once; in every run only a part of the later ones, with VERNOXA_TRUST=all none is left out. `run`
  // gives how many of these calls there were; the answer is how many were struck.
  int strikeEach(const std::string& what, const std::function<int(const Fault&, int number)>& run) {
    int struck = 0;
    for (const Fault& fault : faults) {
      for (int number = 1;; number += tryEverything() || number < 16 ? 1 : 5, ++struck) {
        SCOPED_TRACE(what + ", " + fault.name + " " + std::to_string(number));
        if (run(fault, number) < number || HasFailure()) {
          break;
        }
      }
    }
    return struck;
  }

  void runAll(const std::vector<KeptInput>& inputs, const Scenario& scenario) {
    int struck = 0;
    for (const KeptInput& input : inputs) {
      good_.clear();
      runOnce(faults.front(), 0, input, scenario);
      struck += strikeEach(input.name,
                           [&](const Fault& fault, int number) { return runOnce(fault, number, input, scenario); });
    }
    EXPECT_GT(struck, 100);
    RecordProperty("faults", struck);
  }

  TrustHost host_;
  std::vector<TrustHost::Answer> good_;  // of the run without a fault; empty until that
  std::size_t goodBoxes_ = 0;            // message boxes that it showed
};

TEST_F(FaultLoop, CompanionPackets) {
  runAll(keptInputs("companion_packet"),
         [this](TrustLoad& load, const KeptInput& input) { return askThroughDoor(load, "packetParser", input.rest); });
}

TEST_F(FaultLoop, ThreadPackets) {
  runAll(keptInputs("thread_packet"), [this](TrustLoad& load, const KeptInput& input) {
    return askThroughDoor(load, "packetParserForPthread", input.rest);
  });
}

// The module file that the companion names, and its placement by the host's script.
TEST_F(FaultLoop, Modules) {
  runAll(keptInputs("module_file"), [this](TrustLoad& load, const KeptInput& input) {
    load.fake.files.addFile("C:\\Mods\\m.json", input.answer + "\n" + input.rest);
    host_.answer = "1";
    const std::string wrong = askThroughDoor(
        load, "packetParser",
        R"({"Command":"PlaceDSNModule","Data":{"sumPins":"1","price":"2","dsnDatPath":"C:\\Mods\\m.json",)"
        R"("dsnBmpPath":"","uploadResId":"7","uploadUserId":"8","selfModule":"0"}})");
    host_.call({"placeMarketPart"});
    return wrong;
  });
}

// A command ends as without the fault, or fails with its name in the crash log.
TEST_F(FaultLoop, Commands) {
  runAll(keptInputs("commands"), [this](TrustLoad& load, const KeptInput& input) -> std::string {
    std::vector<TrustHost::Answer> answers;
    for (const Words& words : input.calls) {
      answers.push_back(host_.call(words));
    }
    good_ = good_.empty() ? answers : good_;
    for (std::size_t index = 0; index < answers.size(); ++index) {
      const std::string& command = input.calls[index].front();
      const bool owned = answers[index].status == commandFailed && load.crashes().starts_with(command);
      if (answers[index].status != good_[index].status && !owned) {
        return command + " gave status " + std::to_string(answers[index].status) + ", crash log: " + load.crashes();
      }
    }
    return {};
  });
}

// A box tells of a message that could not be written and of a choice that could not be offered.
TEST_F(FaultLoop, BoxesOfCommands) {
  const std::pair<Words, std::u8string_view> rows[] = {
      {{"sendSaveFile", "C:\\a.dsn"}, u8"发送的数据异常"},
      {{"SelectJumpPart", "U2;U1", "1"}, u8"跳转数据错误"},
  };
  for (const auto& [words, text] : rows) {
    const std::string box = literalOf(FilePath::fromUtf8(utf8(text)));
    bool told = false;
    for (int number = 1;; ++number) {
      TrustLoad load;
      load.beginSession();
      memoryFaults.failCall(number);
      host_.call(words);
      const int calls = memoryFaults.calls();
      memoryFaults.failCall(0);
      told = told || load.fake.messages.shown() == Words{box};
      if (calls < number) {
        break;
      }
    }
    EXPECT_TRUE(told) << box;
  }
}

// A file of the user's that the companion names as the module: it is there after the placement and after the clearing
// away.
TEST_F(FaultLoop, UsersFiles) {
  const std::vector<KeptInput> inputs = {{"a design", "1", "C:/job/a.dsn/.", {}},
                                         {"a project", "1", "c:/JOB/A.OPJ", {}},
                                         {"a library", "1", "C:/job/my.olb. .", {}},
                                         {"a backup", "1", "C:/job/x/../a_0.OBK", {}}};
  runAll(inputs, [this](TrustLoad& load, const KeptInput& input) {
    const std::string wrong = askThroughDoor(
        load, "packetParser", R"({"Command":"PlaceDSNModule","Data":{"dsnDatPath":")" + input.rest + R"("}})");
    host_.call({"placeMarketPart"});
    host_.call({"removeDatFile"});
    return wrong;
  });
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
      memoryFaults.failCall(number);
      const int status = call(row[1]);
      const int calls = memoryFaults.calls();
      memoryFaults.failCall(0);
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
  const int struck = strikeEach("start-up", [this](const Fault& fault, int number) {
    TrustLoad load;
    load.fake.processes.list = {{"System", 0}, {"Capture.exe", 7}};
    Faults& each = fault.of(host_, load);
    each.failCall(number);
    host_.load(load.plugIn);
    const int calls = each.calls();
    each.failCall(0);
    EXPECT_TRUE(load.crashes().empty() || load.crashes() == "Vernoxa_Init" ||
                load.crashes() == "GetProcessidFromName" || load.crashes().find("Orcad") != std::string::npos)
        << load.crashes();
    EXPECT_EQ(load.fake.processes.folder, "D:\\Work");
    for (const plugin::CommandRow& row : plugin::commandTable()) {
      EXPECT_GE(host_.call({row.name}).status, commandFailed);
    }
    host_.load(load.plugIn);
    EXPECT_EQ(nextConversation(host_), nextReply);
    EXPECT_EQ(load.harmToTheUsersFiles(), "");
    return calls;
  });
  EXPECT_GT(struck, 30);
  RecordProperty("faults", struck);
}

}  // namespace
}  // namespace vernoxa
