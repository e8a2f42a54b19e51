// The file system through Windows' ANSI calls: paths go through the code page.
#pragma once

#include "core/files.h"

namespace vernoxa {

class WindowsFiles final : public Files {
 public:
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
};

}  // namespace vernoxa
