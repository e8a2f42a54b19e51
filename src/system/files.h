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

constexpr std::uint32_t readOnlyAttribute = 1;         // FILE_ATTRIBUTE_READONLY
constexpr std::uint32_t directoryAttribute = 16;       // FILE_ATTRIBUTE_DIRECTORY
constexpr std::uint32_t reparsePointAttribute = 1024;  // FILE_ATTRIBUTE_REPARSE_POINT
constexpr std::uint32_t noAttributes = 0xFFFFFFFFU;    // INVALID_FILE_ATTRIBUTES: no such file

// What became of a copy: the number of the system's error, 0 when there is none.
struct CopyResult {
  std::uint32_t error = 0;
  explicit operator bool() const { return error == 0; }
};

// Nothing here throws for a failure of the system: each call answers false, nothing or an empty list.
class Files {
 public:
  virtual ~Files() = default;
  virtual std::uint32_t attributes(const FilePath& path) = 0;
  // The path from its drive or share on, as the system takes it for every other call: "." and ".." resolved, dots and
  // spaces left out where names end. Empty when it is not a path, or longer
  // than 259 characters (MAX_PATH).
  virtual FilePath fullPath(const FilePath& path) = 0;
  // Another name of a file or folder that is there, each part of at most eight characters, a dot and three (a short
  // name), as older programs open it. Its own where it needs no other; empty where the system keeps none.
  virtual FilePath shortPath(const FilePath& path) = 0;
  // What a reparse point is (IO_REPARSE_TAG_SYMLINK and others of winnt.h); 0 for all else, and where the system does
  // not say.
  virtual std::uint32_t reparseTag(const FilePath& path) = 0;
  // The first bytes of a file, at most so many, opened so that others may go on reading it. Nothing for what is no
  // file, as "COM1" and pipes.
  virtual std::optional<std::string> readStart(const FilePath& path, std::size_t most) = 0;
  // Appends; made when missing; others may read, write and delete it meanwhile. Each write arrives in one piece.
  virtual std::unique_ptr<OutputFile> openForAppending(const FilePath& path) = 0;
  // Made new or emptied.
  virtual std::unique_ptr<OutputFile> create(const FilePath& path) = 0;
  // One level only.
  virtual bool createFolder(const FilePath& path) = 0;
  virtual bool removeFile(const FilePath& path) = 0;
  // An empty folder, or a link to a folder (never what stands behind it).
  virtual bool removeFolder(const FilePath& path) = 0;
  // Gives a file another name, in one step also when a file of that name is there. False when the system refuses, as
  // while another program has that one open and does not let it go.
  virtual bool replaceFile(const FilePath& from, const FilePath& to) = 0;
  // Does not overwrite. The copy can be written, also when its original is read-only.
  virtual CopyResult copyFile(const FilePath& from, const FilePath& to) = 0;
  // Entries of a folder without "." and "..", in the system's order; empty when it cannot be read.
  virtual std::vector<FolderEntry> entries(const FilePath& folder) = 0;

  // The whole file.
  std::optional<std::string> read(const FilePath& path) {
    return readStart(path, std::numeric_limits<std::size_t>::max());
  }
  bool exists(const FilePath& path) { return attributes(path) != noAttributes; }
  bool isFolder(const FilePath& path);
  // Whether a folder is a symbolic link, a junction or the like: what stands in it belongs to another place. A folder
  // that a cloud service marks is none. `attributes` are those of the path.
  bool isLink(const FilePath& path, std::uint32_t attributes);
  // Removes a folder and all that it holds; what a link in it leads to stays.
  void removeTree(const FilePath& folder, std::uint32_t attributes);
};

// Windows' text mode: "\n" becomes "\r\n".
std::string withDosLineEnds(std::string_view text);

}  // namespace vernoxa::inline system
