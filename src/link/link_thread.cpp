#include "link/link_thread.h"

#include <chrono>

#include "link/companion_link.h"
#include "link/file_status.h"
#include "link/socket_client.h"
#include "system/clock.h"
#include "system/log.h"
#include "system/system.h"
#include "text/text.h"
#include "wire/envelope.h"

namespace vernoxa::link {
namespace {

constexpr std::chrono::milliseconds retryPause{10000};
constexpr std::chrono::milliseconds closedReportPause{300};
// A refusal that comes later than this came after retries of the system, which take half a second each.
constexpr std::chrono::milliseconds quickRefusal{250};

// Why a poll ended early; nobody acts on the difference, a debugger shows it.
constexpr int pollFailed = -1;  // an exception, or a receive that failed
constexpr int pollNoJson = -3;
constexpr int pollRefused = -4;
constexpr int pollNothingNew = -5;

Json command(std::string_view name) {
  Json request = Json::object();
  request.add("Command", name);
  return request;
}

bool succeeded(const Json& reply) {
  return reply.member("Result").text() == "0";
}

std::string textOrEmpty(JsonView value) {
  return std::string(value.text().value_or(std::string_view()));
}

}  // namespace

void LinkThread::run() noexcept {
  try {
    connectToHost();
    do {
      waitForCompanion();
      if (creatClient() == 0) {
        pollForever();
      }
      clock_.sleep(retryPause);
    } while (true);  // Never true or false: it does not end so.
  } catch (...) {
    logs_.reportCrash("Fun111");
  }
}

void LinkThread::connectToHost() {
  while (connect(client_, hostPort) != 0) {
    clock_.sleep(retryPause);
  }
  clock_.sleep(retryPause);  // after the successful attempt too
}

void LinkThread::waitForCompanion() {
  while (testConnect() != 0) {
    // No pause: the system's own connection attempt takes its time.
  }
}

void LinkThread::pollForever() {
  // Never true or false: it does not end so.
  while (true) {
    clock_.sleep(retryPause);
    if (link_.clientCreated()) {
      connectToServerForPthread();
    } else {
      reconnectCompanion();
    }
  }
}

void LinkThread::reconnectCompanion() {
  {
    SocketClient probe(sockets_, clock_, output_, logs_);
    if (connect(probe, companionPort) != 0 || creatClient() != 0) {
      return;
    }
    clock_.sleep(retryPause);
  }
  connectToServerForPthread();
}

int LinkThread::connect(SocketClient& client, std::uint16_t port) {
  const auto began = clock_.monotonic();
  const int result = client.connect(localAddress, port);
  if (result != 0) {
    link_.setRefusedAtOnce(client.hasSocket() && clock_.monotonic() - began < quickRefusal);
  }
  return result;
}

int LinkThread::testConnect() {
  try {
    SocketClient probe(sockets_, clock_, output_, logs_);
    return connect(probe, companionPort);
  } catch (...) {
    logs_.reportCrash("testConnect");
    return -1;
  }
}

int LinkThread::creatClient() {
  try {
    const Exchange answer = exchange(command("creatClient"));
    if (!answer.reply) {
      return -1;
    }
    if (!answer.reply.member("Result")) {
      output_.print(missingValue);
      return -1;
    }
    return succeeded(answer.reply) ? 0 : -1;
  } catch (...) {
    logs_.reportCrash("creatClient");
    return -1;
  }
}

int LinkThread::connectToServerForPthread() {
  try {
    return poll();
  } catch (...) {
    logs_.reportCrash("connectToServerForPthread");
    return pollFailed;
  }
}

LinkThread::Exchange LinkThread::exchange(const Json& request) {
  client_.sendPacket(request.printFormatted());
  std::string message;
  const int status = client_.receivePacket(message);
  LogWriter log = logs_.openTraffic();
  log.writeFormatted("ret:%d", status);
  if (status != 0) {
    return {};
  }
  Result<Json> reply = parseMessage(message);
  if (const auto* failure = std::get_if<Failure>(&reply)) {
    say(*failure, log, output_);
    return {true, Json()};
  }
  return {true, std::get<Json>(std::move(reply))};
}

int LinkThread::poll() {
  const Exchange answer = exchange(command("GetNewOpenPath"));
  if (!answer.received) {
    return pollFailed;
  }
  if (!answer.reply) {
    return pollNoJson;
  }
  const JsonView data = answer.reply.member("Data");
  if (!succeeded(answer.reply) || !data.isObject()) {
    output_.print(missingValue);
    return pollRefused;
  }
  const std::string closed = textOrEmpty(data.member("CloseFile"));
  if (!data.member("ProjectPath") && closed.empty()) {
    return pollNothingNew;
  }
  for (const std::string& path : designsAmong(textOrEmpty(data.member("ProjectPath")))) {
    if (!reportOpened(path)) {
      return pollFailed;
    }
  }
  const bool namesClosed = closed.size() >= 2;  // a single character is not a name
  return namesClosed && !reportClosed(splitItems(closed, ';')) ? pollFailed : 0;
}

bool LinkThread::reportOpened(const std::string& path) {
  Json request = command("getDsnPinCount");
  request.add("ProjectPath", path);
  link_.setAwaitedCount(path);
  const Exchange count = exchange(request);
  if (count.received) {
    link_.setAwaitedCount({});
  }
  const auto pinCount = count.reply.member("Data").member("PinCount").text();
  if (!pinCount) {
    if (count.reply) {
      output_.print(missingValue);
    }
    return count.received;
  }
  if (*pinCount == "-1") {
    output_.print("Don't have file");
    return true;
  }
  const Exchange status = exchange(status_.opened(path, *pinCount));
  const std::string projectPath = textOrEmpty(status.reply.member("Data").member("Path"));
  if (!projectPath.empty()) {
    status_.followProject(projectPath);
  }
  return status.received;
}

bool LinkThread::reportClosed(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const bool received = exchange(status_.closed(name)).received;
    clock_.sleep(closedReportPause);
    if (!received) {
      return false;
    }
  }
  return true;
}

void runLinkThread(SocketClient& client, CompanionLink& link, const FileStatus& status, Sockets& sockets, Clock& clock,
                   StandardOutput& output, const Logs& logs) {
  LinkThread(client, link, status, sockets, clock, output, logs).run();
}

}  // namespace vernoxa::link
