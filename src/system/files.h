// The file system as the plug-in uses it. Paths and names are true ones, in UTF-8; contents are bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "system/file_path.h"

namespace vernoxa::inline system {

// An open file that is written. Closes itself.
class OutputFile {
 public:
  virtual ~OutputFile() = default;
  // False when not all bytes could be written.
  virtual bool write(std::string_view bytes) = 0;
};

struct FolderEntry {
  std::string name;              // UTF-8
  std::uint32_t attributes = 0;  // as Windows numbers them: 1 read-only, 2 hidden, 16 directory, 1024 reparse point
};

constexpr std::uint32_t directoryAttribute = 16;       // FILE_ATTRIBUTE_DIRECTORY
constexpr std::uint32_t reparsePointAttribute = 1024;  // FILE_ATTRIBUTE_REPARSE_POINT
// INVALID_FILE_ATTRIBUTES: no such file.
constexpr std::uint32_t noAttributes = std::numeric_limits<std::uint32_t>::max();

// The result of a copy: the system's error number, 0 for success.
struct CopyResult {
  std::uint32_t error = 0;
  explicit operator bool() const { return error == 0; }
};

// Nothing here throws when the system fails: a call gives false, null, `nullopt` or an empty value then.
class Files {
 public:
  virtual ~Files() = default;
  virtual std::uint32_t attributes(const FilePath& path) = 0;
  // The whole path from its drive or share on, as the system understands it in every other call: "." and ".." resolved,
  // dots and spaces at the end of names left out. Empty if it is not a path, or is longer than 259 characters
  // (MAX_PATH).
  virtual FilePath fullPath(const FilePath& path) = 0;
  // The short name (8.3) of an existing file or folder, by which older programs open it. The same name if that is short
  // already; empty where the system keeps no short names.
  virtual FilePath shortPath(const FilePath& path) = 0;
  // The kind of a reparse point (IO_REPARSE_TAG_SYMLINK and others of winnt.h); 0 for anything else, and if the system
  // does not say.
  virtual std::uint32_t reparseTag(const FilePath& path) = 0;
  // The first bytes of a file, at most `most`. Other programs may use it meanwhile. `nullopt` for anything that is not
  // a file on a disk, such as "COM1" or a pipe.
  virtual std::optional<std::string> readStart(const FilePath& path, std::size_t most) = 0;
  // For appending; created if missing. Others may read, write and delete it meanwhile. Each write arrives in one piece.
  virtual std::unique_ptr<OutputFile> openForAppending(const FilePath& path) = 0;
  // Created, or emptied if it exists.
  virtual std::unique_ptr<OutputFile> create(const FilePath& path) = 0;
  // One level only.
  virtual bool createFolder(const FilePath& path) = 0;
  virtual bool removeFile(const FilePath& path) = 0;
  // Removes an empty folder, or a link to a folder (never the folder that it leads to).
  virtual bool removeFolder(const FilePath& path) = 0;
  // Renames a file in one step, also when a file of that name exists, which it replaces. False if the system refuses,
  // for example while another program has that file open.
  virtual bool replaceFile(const FilePath& from, const FilePath& to) = 0;
  // Does not overwrite. The copy is never read-only, even if the original is.
  virtual CopyResult copyFile(const FilePath& from, const FilePath& to) = 0;
  // Entries of a folder without "." and "..", in the system's order; empty when it cannot be read.
  virtual std::vector<FolderEntry> entries(const FilePath& folder) = 0;

  // The whole file.
  std::optional<std::string> read(const FilePath& path) {
    return readStart(path, std::numeric_limits<std::size_t>::max());
  }
  bool exists(const FilePath& path) { return attributes(path) != noAttributes; }
  bool isFolder(const FilePath& path);
  // Whether a folder is a symbolic link, a junction or the like: its contents belong to another place. A folder that a
  // cloud service has only marked does not count. `attributes` are those of the path.
  bool isLink(const FilePath& path, std::uint32_t attributes);
  // Removes a folder and everything in it. Of a link it removes only the link.
  void removeTree(const FilePath& folder, std::uint32_t attributes);
};

// Windows' text mode: "\n" becomes "\r\n".
std::string withDosLineEnds(std::string_view text);

}  // namespace vernoxa::inline system
