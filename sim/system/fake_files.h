// A file system in memory that behaves as Windows' does: names without regard to case, "\" and "/" alike, a file needs
// its folder. Usable from any thread.
//
// Tests give paths as literals and read them so.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "system/fake_code_page.h"
#include "system/faults.h"
#include "system/files.h"

namespace vernoxa {

constexpr std::uint32_t readOnlyAttribute = 1;  // FILE_ATTRIBUTE_READONLY

class FakeFiles final : public Files {
 public:
  // Both make every folder above.
  void addFolder(const FilePath& path, std::uint32_t attributes = directoryAttribute);
  void addFile(const FilePath& path, std::string_view bytes, std::uint32_t attributes = 0);
  // The file's bytes; "(no file)" when there is none.
  std::string bytes(const FilePath& path) const;

  void addFolder(std::string_view literal, std::uint32_t attributes = directoryAttribute) {
    addFolder(pathOf(literal), attributes);
  }
  void addFile(std::string_view literal, std::string_view bytes, std::uint32_t attributes = 0) {
    addFile(pathOf(literal), bytes, attributes);
  }
  std::string bytes(std::string_view literal) const { return bytes(pathOf(literal)); }
  bool exists(std::string_view literal) { return Files::exists(pathOf(literal)); }
  bool removeFile(std::string_view literal) { return removeFile(pathOf(literal)); }
  bool removeFolder(std::string_view literal) { return removeFolder(pathOf(literal)); }
  std::vector<FolderEntry> entries(std::string_view literal) { return entries(pathOf(literal)); }

  // Every file and folder by its name as it was first written, sorted.
  std::vector<std::string> paths() const;
  // What was changed, in order: "create", "append", "remove", "rename", "copy", "folder" and the path.
  std::vector<std::string> changes() const;

  Faults faults;
  std::map<FilePath, FilePath> shortPaths;  // of what has one, beside all that is short anyway
  std::map<FilePath, std::uint32_t> reparseTags;
  std::set<FilePath> held;  // by readers that do not let them be replaced

  using Files::exists;
  std::uint32_t attributes(const FilePath& path) override;
  FilePath fullPath(const FilePath& path) override;
  FilePath shortPath(const FilePath& path) override;
  std::uint32_t reparseTag(const FilePath& path) override;
  std::optional<std::string> readStart(const FilePath& path, std::size_t most) override;
  std::unique_ptr<OutputFile> openForAppending(const FilePath& path) override;
  std::unique_ptr<OutputFile> create(const FilePath& path) override;
  bool createFolder(const FilePath& path) override;
  bool removeFile(const FilePath& path) override;
  bool removeFolder(const FilePath& path) override;
  bool replaceFile(const FilePath& from, const FilePath& to) override;
  CopyResult copyFile(const FilePath& from, const FilePath& to) override;
  std::vector<FolderEntry> entries(const FilePath& folder) override;

 private:
  struct Node {
    FilePath path;
    std::uint32_t attributes = 0;
    std::shared_ptr<std::string> bytes;  // outlives a removal while the file is open
  };
  class Output;

  Node* find(const FilePath& path);
  bool hasItsFolder(const FilePath& path);
  Node* fileForWriting(const FilePath& path, bool emptied);
  bool hasEntries(const FilePath& folder) const;
  void change(const char* what, const FilePath& path);

  mutable std::mutex guard_;
  std::map<std::string, Node> nodes_;  // by one text for all spellings of a path, UTF-8
  std::vector<std::string> changes_;
};

}  // namespace vernoxa
