// A file system in memory that behaves as Windows' does: names without regard to case, "\" and "/" alike, a file needs
// its folder. Paths are in the code page. Usable from any thread.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "core/files.h"
#include "system/faults.h"

namespace vernoxa {

class FakeFiles final : public Files {
 public:
  // Both make every folder above.
  void addFolder(const std::string& path, std::uint32_t attributes = directoryAttribute);
  void addFile(const std::string& path, std::string_view bytes, std::uint32_t attributes = 0);
  // The file's bytes; "(no file)" when there is none.
  std::string bytes(const std::string& path) const;
  // Every file and folder by its name as it was first written, sorted.
  std::vector<std::string> paths() const;
  // What was changed, in order: "create", "append", "remove", "copy", "folder" and the path.
  std::vector<std::string> changes() const;

  Faults faults;

  std::uint32_t attributes(const std::string& path) override;
  std::string fullPath(const std::string& path) override;
  std::optional<std::string> read(const std::string& path) override;
  std::unique_ptr<OutputFile> openForAppending(const std::string& path) override;
  std::unique_ptr<OutputFile> create(const std::string& path) override;
  bool createFolder(const std::string& path) override;
  bool removeFile(const std::string& path) override;
  bool removeFolder(const std::string& path) override;
  bool copyFile(const std::string& from, const std::string& to) override;
  std::vector<FolderEntry> entries(const std::string& folder) override;

 private:
  struct Node {
    std::string path;
    std::uint32_t attributes = 0;
    std::shared_ptr<std::string> bytes;  // outlives a removal while the file is open
  };
  class Output;

  Node* find(const std::string& path);
  bool hasItsFolder(const std::string& path);
  Node* fileForWriting(const std::string& path, bool emptied);
  bool hasEntries(const std::string& folder) const;
  void change(const char* what, const std::string& path);

  mutable std::mutex guard_;
  std::map<std::string, Node> nodes_;
  std::vector<std::string> changes_;
};

}  // namespace vernoxa
