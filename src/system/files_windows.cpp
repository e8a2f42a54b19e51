#include "system/system_windows.h"

#include <algorithm>
#include <array>

#include "system/handle_windows.h"
#include "system/wide_text_windows.h"

namespace vernoxa::inline system {
namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t largestPiece = std::size_t{1} << 30U;  // a write takes a 32-bit count

// A path for one system call. While it exists, a call for a drive without a disk fails, and Windows does not ask the
// user for the disk in a box.
class SystemPath {
 public:
  explicit SystemPath(std::wstring text) : text_(std::move(text)) {
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &formerMode_);
  }
  ~SystemPath() { SetThreadErrorMode(formerMode_, nullptr); }
  SystemPath(const SystemPath&) = delete;
  SystemPath& operator=(const SystemPath&) = delete;

  const wchar_t* text() const { return text_.c_str(); }

 private:
  const std::wstring text_;
  DWORD formerMode_ = 0;
};

SystemPath wide(const FilePath& path) {
  return SystemPath(toWide(path.utf8(), CP_UTF8));
}

// The path that `call` writes into a buffer of `size` characters; empty if it fails or needs more.
template <class Call>
FilePath pathWithin(std::size_t size, Call call) {
  std::wstring path(size, L'\0');
  const DWORD length = call(path.data(), static_cast<DWORD>(size));
  path.resize(length < size ? length : 0);
  return FilePath::fromUtf8(fromWide(path, CP_UTF8));
}

class WindowsOutputFile final : public OutputFile {
 public:
  explicit WindowsOutputFile(FileHandle handle) : handle_(std::move(handle)) {}

  bool write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const std::size_t wanted = std::min(bytes.size(), largestPiece);
      DWORD written = 0;
      if (WriteFile(handle_.get(), bytes.data(), static_cast<DWORD>(wanted), &written, nullptr) == 0 || written == 0) {
        return false;
      }
      bytes.remove_prefix(written);
    }
    return true;
  }

 private:
  FileHandle handle_;
};

std::unique_ptr<OutputFile> open(const FilePath& path, DWORD access, DWORD disposition) {
  FileHandle handle(
      CreateFileW(wide(path).text(), access, shareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
  return handle ? std::make_unique<WindowsOutputFile>(std::move(handle)) : nullptr;
}

CopyResult failedCopy() {
  return {std::max<std::uint32_t>(GetLastError(), 1)};
}

bool isDots(std::wstring_view name) {
  return name == L"." || name == L"..";
}

class WindowsFiles final : public Files {
 public:
  std::uint32_t attributes(const FilePath& path) override { return GetFileAttributesW(wide(path).text()); }

  FilePath fullPath(const FilePath& path) override {
    return pathWithin(MAX_PATH, [&](wchar_t* full, DWORD size) {  // no other call takes a longer one
      return GetFullPathNameW(wide(path).text(), size, full, nullptr);
    });
  }

  FilePath shortPath(const FilePath& path) override {
    return pathWithin(MAX_PATH,
                      [&](wchar_t* name, DWORD size) { return GetShortPathNameW(wide(path).text(), name, size); });
  }

  std::uint32_t reparseTag(const FilePath& path) override {
    WIN32_FIND_DATAW entry{};
    const FindHandle search(FindFirstFileW(wide(path).text(), &entry));
    const bool tagged = search && (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return tagged ? entry.dwReserved0 : 0;
  }

  std::optional<std::string> readStart(const FilePath& path, std::size_t most) override {
    const FileHandle handle(
        CreateFileW(wide(path).text(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    // Reading from a pipe or a serial port could wait for ever.
    if (!handle || GetFileType(handle.get()) != FILE_TYPE_DISK) {
      return std::nullopt;
    }
    std::string content;
    std::array<char, 65536> piece;
    DWORD count = 0;
    while (ReadFile(handle.get(), piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) != 0) {
      content.append(piece.data(), std::min<std::size_t>(count, most - content.size()));
      if (count == 0 || content.size() == most) {
        return content;
      }
    }
    return std::nullopt;
  }

  std::unique_ptr<OutputFile> openForAppending(const FilePath& path) override {
    return open(path, FILE_APPEND_DATA, OPEN_ALWAYS);
  }

  std::unique_ptr<OutputFile> create(const FilePath& path) override {
    return open(path, GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
  }

  bool createFolder(const FilePath& path) override { return CreateDirectoryW(wide(path).text(), nullptr) != 0; }

  bool removeFile(const FilePath& path) override { return DeleteFileW(wide(path).text()) != 0; }

  bool removeFolder(const FilePath& path) override { return RemoveDirectoryW(wide(path).text()) != 0; }

  bool replaceFile(const FilePath& from, const FilePath& to) override {
    return MoveFileExW(wide(from).text(), wide(to).text(), MOVEFILE_REPLACE_EXISTING) != 0;
  }

  CopyResult copyFile(const FilePath& from, const FilePath& to) override {
    const SystemPath copy = wide(to);
    if (CopyFileW(wide(from).text(), copy.text(), TRUE) == 0) {
      return failedCopy();
    }
    // The system copies the attributes too. A file that is read-only can neither be written nor removed.
    const DWORD attributes = GetFileAttributesW(copy.text());
    const bool readOnly = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (readOnly && SetFileAttributesW(copy.text(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}) == 0) {
      return failedCopy();
    }
    return {};
  }

  std::vector<FolderEntry> entries(const FilePath& folder) override {
    std::vector<FolderEntry> found;
    WIN32_FIND_DATAW entry{};
    const FindHandle search(FindFirstFileW(wide(folder / "*.*").text(), &entry));
    if (!search) {
      return found;
    }
    do {
      if (!isDots(entry.cFileName)) {
        found.push_back({fromWide(entry.cFileName, CP_UTF8), entry.dwFileAttributes});
      }
    } while (FindNextFileW(search.get(), &entry) != 0);
    return found;
  }
};

}  // namespace

std::unique_ptr<Files> windowsFiles() {
  return std::make_unique<WindowsFiles>();
}

}  // namespace vernoxa::inline system
