// Which designs the host has open, and which of them were reported to the companion.
//
// Open and reported designs are compared by their names in messages, and by the host's bytes if two have the same name.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vernoxa::link {
class CompanionLink;
}  // namespace vernoxa::link
namespace vernoxa::inline system {
class LogWriter;
}  // namespace vernoxa::inline system
namespace vernoxa::inline tcl {
class ScriptHost;
}  // namespace vernoxa::inline tcl
namespace vernoxa::inline text {
class MessagePaths;
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::designs {

// A design under its two names.
struct KnownDesign {
  std::string hostPath;  // as the host gave it, in either encoding
  std::string name;      // in messages: made from `hostPath` once, and never converted again
};

// Host thread only.
class OpenDesigns {
 public:
  OpenDesigns(MessagePaths& paths, const TextConverter& converter, link::CompanionLink& link)
      : paths_(paths), converter_(converter), link_(link) {}

  // Asks the host for its open paths and keeps the designs among them, in the host's order.
  void scan(ScriptHost& host, LogWriter& log);
  // As of the latest scan.
  const std::vector<KnownDesign>& all() const { return open_; }

  // A design is reported once the companion has its "Open" message, and no longer once it has its "Close" message.
  // `name` is that of the message, in the code page already.
  void noteReported(std::string_view name);
  void noteClosed(std::string_view name);
  // A design whose pins the host cannot count is skipped: it counts as reported. `hostPath` is as the host gave it.
  void noteWithoutPins(std::string_view hostPath);
  // For a new connection: the companion may be another one, which knows nothing yet.
  void forgetReported() { reported_.clear(); }

  // The first open design not yet reported, as the host gave it; `nullopt` if all are.
  std::optional<std::string> firstUnreported() const;
  // Reported designs that are no longer open, as the host gave them, joined by ";".
  std::string closed() const;

 private:
  std::string hostPathOf(std::string_view name);
  bool isReported(const KnownDesign& design) const;
  template <class Wanted>
  void note(Wanted wanted, const KnownDesign& otherwise);
  void forgetUnreceivedCount();

  MessagePaths& paths_;
  const TextConverter& converter_;
  link::CompanionLink& link_;
  std::vector<KnownDesign> open_;
  std::vector<KnownDesign> reported_;  // those that the companion knows to be open
};

}  // namespace vernoxa::designs
