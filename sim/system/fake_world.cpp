#include "system/fake_world.h"

#include <algorithm>
#include <mutex>
#include <new>

#include "text/text.h"

namespace vernoxa {
namespace {

class FakeLock final : public Lock {
 public:
  explicit FakeLock(FakeLockSource& source) : source_(source) {}
  void acquire() override {
    mutex_.lock();
    source_.mostHeld = std::max(source_.mostHeld, ++source_.held);
  }
  void release() override {
    --source_.held;
    mutex_.unlock();
  }

 private:
  FakeLockSource& source_;
  std::recursive_mutex mutex_;
};

}  // namespace

std::unique_ptr<Lock> FakeLockSource::create() {
  return failing ? throw std::bad_alloc() : std::make_unique<FakeLock>(*this);
}

std::vector<Process> FakeProcesses::running() {
  return listThrows ? throw std::bad_alloc() : list;
}

void FakeProcesses::start(const std::string& file, const std::string& argument) {
  if (startThrows) {
    throw std::bad_alloc();
  }
  started.push_back(folder + "> " + file + " " + argument);
}

void FakeStandardOutput::print(std::string_view text) {
  const std::lock_guard lock(guard_);
  throwing ? throw std::bad_alloc() : text_.append(text);
}

std::string FakeStandardOutput::text() const {
  const std::lock_guard lock(guard_);
  return text_;
}

void FakeStandardOutput::forget() {
  const std::lock_guard lock(guard_);
  text_ = {};
}

void FakeUserMessages::show(std::u8string_view text, MessageIcon icon) {
  const std::string said = literalOf(FilePath::fromUtf8(utf8(text)));
  {
    const std::lock_guard lock(guard_);
    shown_.push_back(std::string(icon == MessageIcon::none ? "" : "(i) ").append(said));
  }
  if (during) {
    during(said);
  }
}

std::vector<std::string> FakeUserMessages::shown() const {
  const std::lock_guard lock(guard_);
  return shown_;
}

void FakeUserMessages::forget() {
  const std::lock_guard lock(guard_);
  shown_ = {};
}

FakeSession::FakeSession()
    : session(world, plugin::crashLogsOf(world, pathOf("C:\\App\\bin")),
              plugin::directoriesOf(pathOf("C:\\App\\bin\\Vernoxa64.dll"))) {
  fake.files.addFolder("C:\\App\\bin");
}

std::string FakeSession::traffic() const {
  return logMessages(fake.files.bytes("C:\\App\\Script\\Log\\schLog.txt"));
}

std::string FakeSession::crashes() const {
  return logMessages(fake.files.bytes("C:\\App\\bin\\catchLog\\log.txt"));
}

std::string logMessages(const std::string& log) {
  static constexpr std::string_view stamp = "[Time]:2024-3-5 9:7:2:45.";
  if (log == "(no file)") {
    return {};
  }
  std::string messages = replaceAll(log, "\r\n", "\n");
  messages = replaceAll("\n" + messages, std::string("\n").append(stamp), "\n").substr(1);
  if (messages.ends_with('\n')) {
    messages.pop_back();
  }
  return messages;
}

}  // namespace vernoxa
