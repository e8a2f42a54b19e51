#include "link/link_thread.h"

#include <chrono>

#include "designs/file_status.h"
#include "dispatch/services.h"
#include "dispatch/state.h"
#include "link/socket_client.h"
#include "system/clock.h"
#include "system/log.h"
#include "system/system.h"
#include "system/world.h"
#include "text/code_page.h"
#include "text/text.h"
#include "wire/envelope.h"

namespace vernoxa {
namespace {

constexpr std::chrono::milliseconds retryPause{10000};
constexpr std::chrono::milliseconds closedReportPause{300};
// Between a refusal that the system hands on at once and one after its own tries, which take half a second each.
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
      services_.world.clock.sleep(retryPause);
    } while (true);
  } catch (...) {
    services_.logs.reportCrash("Fun111");
  }
}

void LinkThread::connectToHost() {
  int connected = -1;
  while (connected != 0) {
    connected = connect(client_, hostPort);
    services_.world.clock.sleep(retryPause);  // after the successful attempt too
  }
}

void LinkThread::waitForCompanion() {
  while (testConnect() != 0) {
    // No pause: the system's own connection attempt takes its time.
  }
}

void LinkThread::pollForever() {
  while (true) {
    services_.world.clock.sleep(retryPause);
    if (services_.state.link.clientCreated()) {
      connectToServerForPthread();
    } else {
      reconnectCompanion();
    }
  }
}

void LinkThread::reconnectCompanion() {
  {
    SocketClient probe(services_.world, services_.logs);
    if (connect(probe, companionPort) != 0 || creatClient() != 0) {
      return;
    }
    services_.world.clock.sleep(retryPause);
  }
  connectToServerForPthread();
}

int LinkThread::connect(SocketClient& client, std::uint16_t port) {
  Clock& clock = services_.world.clock;
  const auto began = clock.monotonic();
  const int result = client.connect(localAddress, port);
  if (result != 0) {
    services_.state.link.setRefusedAtOnce(clock.monotonic() - began < quickRefusal);
  }
  return result;
}

int LinkThread::testConnect() {
  try {
    SocketClient probe(services_.world, services_.logs);
    return connect(probe, companionPort);
  } catch (...) {
    services_.logs.reportCrash("testConnect");
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
      printMissingValue(services_.world.output);
      return -1;
    }
    return succeeded(answer.reply) ? 0 : -1;
  } catch (...) {
    services_.logs.reportCrash("creatClient");
    return -1;
  }
}

int LinkThread::connectToServerForPthread() {
  try {
    return poll();
  } catch (...) {
    services_.logs.reportCrash("connectToServerForPthread");
    return pollFailed;
  }
}

LinkThread::Exchange LinkThread::exchange(const Json& request) {
  client_.sendPacket(request.printFormatted());
  std::string message;
  const int status = client_.receivePacket(message);
  services_.logs.openTraffic().writeFormatted("ret:%d", status);
  if (status != 0) {
    return {};
  }
  return {true, parseMessage(message, services_)};
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
    printMissingValue(services_.world.output);
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
  const bool namesClosed = closed.size() >= 2;  // a single character is no name
  return namesClosed && !reportClosed(splitItems(closed, ';')) ? pollFailed : 0;
}

bool LinkThread::reportOpened(const std::string& path) {
  StandardOutput& output = services_.world.output;
  Json request = command("getDsnPinCount");
  request.add("ProjectPath", path);
  LinkState& link = services_.state.link;
  link.setAwaitedCount(path);
  const Exchange count = exchange(request);
  if (count.received) {
    link.setAwaitedCount({});
  }
  const auto pinCount = count.reply.member("Data").member("PinCount").text();
  if (!pinCount) {
    if (count.reply) {
      printMissingValue(output);
    }
    return count.received;
  }
  if (*pinCount == "-1") {
    output.print("Don't have file");
    return true;
  }
  const Exchange told = exchange(openedMessage(services_, path, *pinCount));
  const std::string projectPath = textOrEmpty(told.reply.member("Data").member("Path"));
  if (!projectPath.empty()) {
    followProject(services_, projectPath);
  }
  return told.received;
}

bool LinkThread::reportClosed(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const bool received = exchange(closedMessage(services_, name)).received;
    services_.world.clock.sleep(closedReportPause);
    if (!received) {
      return false;
    }
  }
  return true;
}

}  // namespace vernoxa
