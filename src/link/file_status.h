// The "FileStatus" message: which design was opened, saved or closed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/json.h"

namespace vernoxa::inline system {
class Files;
class HostExecutable;
class Processes;
class ProjectFolder;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class MessagePaths;
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::link {

// Usable from any thread.
class FileStatus {
 public:
  FileStatus(MessagePaths& paths, const TextConverter& converter, Files& files, Processes& processes,
             const HostExecutable& host, ProjectFolder& project)
      : paths_(paths), converter_(converter), files_(files), processes_(processes), host_(host), project_(project) {}

  // Whether messages have a name for a design. One without is not reported.
  bool hasName(std::string_view hostPath) const;

  // The message with its "Data" in the order "Status", "FileName", "Pid", "AllegroPath", "PinCount"; a save has no pin
  // count, a close the first two only. `hostPath` and `pinCount` are as the host gave them.
  Json opened(std::string_view hostPath, std::string_view pinCount) const;
  Json saved(std::string_view hostPath) const;
  Json closed(std::string_view hostPath) const;

  // Takes the folder of the open project from the companion's answer, which names it in the code page or in UTF-8: the
  // cache folders follow it.
  void followProject(std::string_view path) const;

 private:
  Json data(std::string_view status, std::string_view hostPath) const;
  void addHost(Json& data) const;

  MessagePaths& paths_;
  const TextConverter& converter_;
  Files& files_;
  Processes& processes_;
  const HostExecutable& host_;
  ProjectFolder& project_;
};

// The paths of a ";" list whose extension, the text after the last ".", is exactly "dsn" or "DSN".
std::vector<std::string> designsAmong(std::string_view paths);

}  // namespace vernoxa::link
