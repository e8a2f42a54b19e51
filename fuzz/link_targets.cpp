#include <algorithm>

#include "dispatch/request.h"
#include "link/link_thread.h"
#include "link/socket_client.h"
#include "system/fake_world.h"
#include "target.h"
#include "text/json.h"
#include "wire/envelope.h"
#include "wire/packet_text.h"

namespace vernoxa::fuzz {
namespace {

// The input as a stream that comes in pieces: a byte gives the size of each piece that follows it.
std::vector<Piece> piecesOf(std::string_view input) {
  std::vector<Piece> pieces;
  while (!input.empty()) {
    const auto size = static_cast<std::size_t>(static_cast<unsigned char>(input.front())) + 1;
    pieces.push_back({std::string(input.substr(1, size)), std::chrono::milliseconds(size)});
    input.remove_prefix(std::min(input.size(), size + 1));
  }
  std::erase_if(pieces, [](const Piece& piece) { return piece.bytes.empty(); });
  return pieces;
}

void requireAllClosed(FakeSession& services) {
  require(services.fake.sockets.stillOpen() == 0, "a socket stayed open");
  require(services.fake.sockets.started() == 1, "a start of the sockets without its clean-up");
  require(!services.fake.sockets.misused(), "a closed socket was used");
}

}  // namespace

void packetText(std::string_view input) {
  const DecodedPacket decoded = messageOf(input);
  require(decoded.message.size() <= input.size() / 2, "more was decoded than came");
  const std::string again = packetTextOf(decoded.message);
  if (decoded.valid) {
    std::string lower(input.substr(0, input.size() / 2 * 2));
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return static_cast<char>(c >= 'A' && c <= 'F' ? c + ('a' - 'A') : c); });
    require(again == lower, "decoding and encoding changed a packet text");
  }
  require(messageOf(packetTextOf(input)).message == input, "encoding and decoding changed a message");

  FakeSession services;
  services.enableTraffic();
  LogWriter log = services.logs.openTraffic();
  const Result<std::string> logged = decodePacket(input, log);
  const auto* message = std::get_if<std::string>(&logged);
  require((message != nullptr) == decoded.valid, "decodePacket judged otherwise");
  require(message == nullptr || *message == decoded.message, "decodePacket gave another message");
}

void frame(std::string_view input) {
  FakeSession services;
  if (!input.empty() && (input.front() & 1) != 0) {
    services.enableTraffic();
  }
  const bool limited = !input.empty() && (input.front() & 2) != 0;
  services.fake.sockets.expect(link::hostPort, {piecesOf(input), StreamEnd::close, {}});
  {
    link::SocketClient client = services.newClient();
    require(client.connect(link::localAddress, link::hostPort) == 0, "the connection was refused");
    int received = 0;
    while (received == 0) {
      std::string message;
      try {
        received = limited ? client.receivePacket(message, std::chrono::seconds(30)) : client.receivePacket(message);
      } catch (const std::runtime_error&) {
        require(message.empty(), "a faulty payload gave a message");
      }
      require(message.size() < 32768, "a message longer than the format allows");
    }
  }
  requireAllClosed(services);
}

void envelope(std::string_view input) {
  const Result<Json> parsed = parseMessage(std::string(input));
  if (std::holds_alternative<Failure>(parsed)) {
    return;
  }
  const auto& message = std::get<Json>(parsed);
  const Result<Request> request = requestIn(std::string(input));
  const auto* const command = std::get_if<Request>(&request);
  require((command != nullptr) == message.member("Command").text().has_value(), "a request without a command");
  const Json again = Json::parse(message.printUnformatted()).document;
  require(static_cast<bool>(again), "what was printed does not parse");
  require(again.printFormatted() == message.printFormatted(), "printing and parsing changed a message");
  if (command != nullptr) {
    const Json reply = Json::parse(errorReply("command error", command->command)).document;
    require(reply.member("Command").text() == command->command + std::string(replySuffix), "a reply with another name");
  }
  for (const JsonView member : message.view()) {
    member.wholeNumber();
    require(member.size() == 0 || member.isArray() || member.isObject(), "members in a plain value");
  }
}

// The host's answers to the thread, one a line; "|" within a line ends a frame early and begins the next one.
void linkThread(std::string_view input) {
  FakeSession services;
  services.companionLink.setClientCreated(true);
  Peer host;
  host.pieces = {{frameOf(R"({"Result":"0"})"), {}}};
  while (!input.empty()) {
    std::string_view line = takeUntil(input, '\n');
    while (!line.empty()) {
      const std::string whole = frameOf(takeUntil(line, '|'));
      host.pieces.push_back({whole.substr(0, 4), {}});
      host.pieces.push_back({whole.substr(4), {}});
    }
  }
  std::erase_if(host.pieces, [](const Piece& piece) { return piece.bytes.empty(); });
  services.fake.sockets.listen(link::hostPort, std::move(host));
  services.fake.sockets.listen(link::companionPort, {});
  services.fake.clock.stopAfter = 12;
  {
    link::SocketClient client = services.newClient();
    services.linkThread(client).run();
  }
  requireAllClosed(services);
  require(services.crashes().ends_with("Fun111"), "the thread ended by itself");
}

}  // namespace vernoxa::fuzz
