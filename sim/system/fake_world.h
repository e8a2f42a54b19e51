// Stand-ins for everything that the plug-in needs of the operating system.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "link/link_thread.h"
#include "plugin/request_table.h"
#include "plugin/run.h"
#include "plugin/world.h"
#include "system/fake_clock.h"
#include "system/fake_code_page.h"
#include "system/fake_desktop.h"
#include "system/fake_files.h"
#include "system/fake_sockets.h"
#include "system/log.h"
#include "system/random.h"
#include "system/system.h"
#include "system/user_messages.h"

namespace vernoxa {

class FakeGuidSource final : public GuidSource {
 public:
  std::optional<Guid> create() override { return next; }

  std::optional<Guid> next = Guid{0x1B4E28BA, 0x2FA1, 0x11D2, {0x88, 0x3F, 0x00, 0x16, 0xD3, 0xCC, 0xA4, 0x27}};
};

class FakeLockSource final : public LockSource {
 public:
  std::unique_ptr<Lock> create() override;

  int held = 0;  // by the calling thread, over all locks; read it on the thread that uses them
  int mostHeld = 0;
  bool failing = false;  // `create` throws std::bad_alloc
};

class FakeProcesses final : public Processes {
 public:
  std::vector<Process> running() override;
  int ownId() override { return id; }
  FilePath currentFolder() override { return pathOf(folder); }
  void setCurrentFolder(const FilePath& path) override { folder = literalOf(path); }
  void start(const std::string& file, const std::string& argument) override;

  std::vector<Process> list{{"[System Process]", 0}, {"Capture.exe", 4242}};
  int id = 4242;
  std::string folder = "D:\\Work";
  std::vector<std::string> started;  // "folder> file argument"
  bool listThrows = false;
  bool startThrows = false;
};

// Gives the numbers that a test has set, in their order, then counts on from the last one.
class FakeRandomNumbers final : public RandomNumbers {
 public:
  int next() override {
    if (!numbers.empty()) {
      last_ = numbers.front();
      numbers.pop_front();
      return last_;
    }
    return ++last_;
  }

  std::deque<int> numbers;

 private:
  int last_ = 0;
};

class FakeStandardOutput final : public StandardOutput {
 public:
  void print(std::string_view text) override;
  std::string text() const;
  void forget();

  bool throwing = false;  // `print` throws std::bad_alloc

 private:
  mutable std::mutex guard_;
  std::string text_;
};

class FakeUserMessages final : public UserMessages {
 public:
  void show(std::u8string_view text, MessageIcon icon) override;
  // As literals of the tests; a text with an icon begins with "(i) ".
  std::vector<std::string> shown() const;
  void forget();

  std::function<void(std::string_view text)> during;  // what the event loop of each box does

 private:
  mutable std::mutex guard_;
  std::vector<std::string> shown_;
};

class FakeWorld {
 public:
  FakeClock clock;
  FakeCodePage codePage;
  FakeFiles files;
  FakeGuidSource guids;
  FakeLockSource locks;
  FakeProcesses processes;
  FakeRandomNumbers random;
  FakeSockets sockets{clock};
  FakeStandardOutput output;
  FakeUserMessages messages;
  FakeRegistry registry;
  FakeClipboard clipboard{files};
  FakePictures pictures;
  FakeDesktop desktop;

  plugin::World world() {
    return {clock,   codePage, files,    guids,    locks,     processes, random,
            sockets, output,   messages, registry, clipboard, pictures,  desktop};
  }
};

// A session on a fake world: plug-in folder "C:\App\bin", base directory "C:\App".
class FakeSession {
 public:
  FakeSession();

  FakeWorld fake;
  plugin::World world = fake.world();
  plugin::Session session;

  // Its parts.
  template <class Part>
  Part& part() {
    return session.part<Part>();
  }
  const Logs& logs = part<const Logs>();
  const TextConverter& text = part<const TextConverter>();
  ProjectFolder& project = part<ProjectFolder>();
  HostExecutable& hostExecutable = part<HostExecutable>();
  link::CompanionLink& companionLink = part<link::CompanionLink>();
  modules::PlacementContext& placement = part<modules::PlacementContext>();

  link::SocketClient newClient() { return link::SocketClient(fake.sockets, fake.clock, fake.output, logs); }
  link::LinkThread linkThread(link::SocketClient& client) {
    return link::LinkThread(client, companionLink, part<const link::FileStatus>(), fake.sockets, fake.clock,
                            fake.output, logs);
  }
  // The reply to a message, both in the code page.
  std::string replyTo(const Endpoint& endpoint, const std::string& message, ScriptHost& host) {
    LogWriter log = logs.openTraffic();
    return part<Dispatcher>().replyTo(endpoint, message, host, log);
  }

  // Turns the traffic log on.
  void enableTraffic() { fake.files.addFolder("C:\\App\\Script\\Log"); }
  // Messages of the logs' lines, without time and line end, joined by "\n".
  std::string traffic() const;
  std::string crashes() const;
};

// The message of each log line, joined by "\n"; a line that does not begin with the fake clock's stamp stays whole.
std::string logMessages(const std::string& log);

}  // namespace vernoxa
