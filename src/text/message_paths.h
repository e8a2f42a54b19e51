// How messages to the companion name files.
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

  // One of our own paths, as a companion can open it through the code page. If the code page lacks a character: the
  // short name (the file has to exist for that), else the true name in UTF-8, which readers recognise by its three-byte
  // sequences. If it has no such sequence either: empty, with a line in the traffic log.
  std::string of(const FilePath& path) const;

  // The name of a design in messages (code page): the host's path, converted if it looks like UTF-8 Chinese. If the
  // code page lacks a character: the short name of the file. If it has none the result is empty and the design is not
  // reported, with one line in the traffic log for each such design.
  // Convert a path only once: the bytes of a converted name can look like UTF-8 themselves.
  std::string ofDesign(std::string_view hostPath);

 private:
  std::string otherName(const std::string& hostPath, const FilePath& path);
  std::string keptName(const std::string& hostPath) const;
  bool keepName(const std::string& hostPath, const std::string& name);

  const TextConverter& converter_;
  Files& files_;
  const Logs& logs_;
  mutable std::mutex guard_;
  // Short names of designs that the code page cannot name, by the host's path: they are kept because a file that is
  // gone has none any more. Empty for a design without one.
  std::map<std::string, std::string> otherNames_;
};

// The picture that goes with the next module that is handed over; host thread only.
struct PreviewPicture {
  std::string path;  // as a message names it; empty when there is none
};

}  // namespace vernoxa::inline text
