// The file system as the plug-in uses it. Paths and names are in the code page; contents are bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vernoxa {

// An open file that is written. Closes itself.
class OutputFile {
 public:
  virtual ~OutputFile() = default;
  // False when not all bytes could be written.
  virtual bool write(std::string_view bytes) = 0;
};

struct FolderEntry {
  std::string name;
  std::uint32_t attributes = 0;  // as Windows numbers them: 1 read-only, 2 hidden, 16 directory, 1024 reparse point
};

constexpr std::uint32_t directoryAttribute = 16;       // FILE_ATTRIBUTE_DIRECTORY
constexpr std::uint32_t reparsePointAttribute = 1024;  // FILE_ATTRIBUTE_REPARSE_POINT
constexpr std::uint32_t noAttributes = 0xFFFFFFFFU;    // INVALID_FILE_ATTRIBUTES: no such file

// Nothing here throws for a failure of the system: each call answers false, nothing or an empty list.
class Files {
 public:
  virtual ~Files() = default;
  virtual std::uint32_t attributes(const std::string& path) = 0;
  // The path from its drive or share on, as the system takes it for every other call: "." and ".." resolved, dots and
  // blanks left out where names end. Empty when it is no path, or longer
  // than 259 bytes (MAX_PATH).
  virtual std::string fullPath(const std::string& path) = 0;
  // The whole file, opened so that others may go on reading it. Nothing for what is no file, as "COM1" and pipes.
  virtual std::optional<std::string> read(const std::string& path) = 0;
  // Appends; made when missing; others may read, write and delete it meanwhile. Each write arrives in one piece.
  virtual std::unique_ptr<OutputFile> openForAppending(const std::string& path) = 0;
  // Made new or emptied.
  virtual std::unique_ptr<OutputFile> create(const std::string& path) = 0;
  // One level only.
  virtual bool createFolder(const std::string& path) = 0;
  virtual bool removeFile(const std::string& path) = 0;
  // An empty folder, or a link to a folder (never what stands behind it).
  virtual bool removeFolder(const std::string& path) = 0;
  // Does not overwrite.
  virtual bool copyFile(const std::string& from, const std::string& to) = 0;
  // Entries of a folder without "." and "..", in the system's order; empty when it cannot be read.
  virtual std::vector<FolderEntry> entries(const std::string& folder) = 0;

  bool exists(const std::string& path) { return attributes(path) != noAttributes; }
  bool isFolder(const std::string& path);
};

// Windows' text mode: "\n" becomes "\r\n".
std::string withDosLineEnds(std::string_view text);

}  // namespace vernoxa
