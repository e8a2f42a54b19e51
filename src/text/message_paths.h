// How messages name files: the border between paths and the texts that travel to the companion.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "system/file_path.h"

namespace vernoxa::inline system {
class Files;
class Logs;
}  // namespace vernoxa::inline system

namespace vernoxa::inline text {

class TextConverter;

// Usable from any thread.
class MessagePaths {
 public:
  MessagePaths(const TextConverter& converter, Files& files, const Logs& logs)
      : converter_(converter), files_(files), logs_(logs) {}

  // A path of ours, for a reader that opens it through the code page. Where the code page lacks a character it is the
  // short name, which the file must be there for, and without one the true name in UTF-8, which readers tell by its
  // three-byte sequences. A path that has none is not reported: the empty text, and a line in the traffic log.
  std::string of(const FilePath& path) const;

  // The name by which messages know a design (code page): the host's path, converted when it looks like UTF-8 Chinese.
  // Where the code page lacks a character of it, the short name that the system keeps for the file; empty when there is
  // none, with one line in the traffic log for each design: it is not reported.
  // Made once from what the host gave: the bytes of a converted name can look like UTF-8 too.
  std::string ofDesign(std::string_view hostPath);

 private:
  std::string otherName(const std::string& hostPath, const FilePath& path);
  std::string keptName(const std::string& hostPath) const;
  bool keepName(const std::string& hostPath, const std::string& name);

  const TextConverter& converter_;
  Files& files_;
  const Logs& logs_;
  mutable std::mutex guard_;
  // What messages call a design that the code page has no name for, kept for when its file is gone; empty while nothing
  // does. By the path as the host gave it.
  std::map<std::string, std::string> otherNames_;
};

// The picture that goes with the next module that is handed over; host thread only.
struct PreviewPicture {
  std::string path;  // as a message names it; empty when there is none
};

}  // namespace vernoxa::inline text
