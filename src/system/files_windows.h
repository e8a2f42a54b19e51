// The file system through Windows' wide calls.
#pragma once

#include "system/files.h"

namespace vernoxa {

class WindowsFiles final : public Files {
 public:
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
};

}  // namespace vernoxa
