#include "core/files_windows.h"

#include <algorithm>
#include <array>

#include "core/handle_windows.h"

namespace vernoxa {
namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t largestPiece = std::size_t{1} << 30U;  // a write takes a 32-bit count

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

std::unique_ptr<OutputFile> open(const std::string& path, DWORD access, DWORD disposition) {
  FileHandle handle(CreateFileA(path.c_str(), access, shareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
  return handle ? std::make_unique<WindowsOutputFile>(std::move(handle)) : nullptr;
}

bool isDots(const char* name) {
  return std::string_view(name) == "." || std::string_view(name) == "..";
}

}  // namespace

std::uint32_t WindowsFiles::attributes(const std::string& path) {
  return GetFileAttributesA(path.c_str());
}

std::string WindowsFiles::fullPath(const std::string& path) {
  std::string full(MAX_PATH, '\0');
  const DWORD length = GetFullPathNameA(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  full.resize(length < full.size() ? length : 0);  // no other call takes a longer one
  return full;
}

std::optional<std::string> WindowsFiles::read(const std::string& path) {
  const FileHandle handle(
      CreateFileA(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  // A pipe or a serial port would be waited for.
  if (!handle || GetFileType(handle.get()) != FILE_TYPE_DISK) {
    return std::nullopt;
  }
  std::string content;
  std::array<char, 65536> piece;
  DWORD count = 0;
  while (ReadFile(handle.get(), piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) != 0) {
    if (count == 0) {
      return content;
    }
    content.append(piece.data(), count);
  }
  return std::nullopt;
}

std::unique_ptr<OutputFile> WindowsFiles::openForAppending(const std::string& path) {
  return open(path, FILE_APPEND_DATA, OPEN_ALWAYS);
}

std::unique_ptr<OutputFile> WindowsFiles::create(const std::string& path) {
  return open(path, GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
}

bool WindowsFiles::createFolder(const std::string& path) {
  return CreateDirectoryA(path.c_str(), nullptr) != 0;
}

bool WindowsFiles::removeFile(const std::string& path) {
  return DeleteFileA(path.c_str()) != 0;
}

bool WindowsFiles::removeFolder(const std::string& path) {
  return RemoveDirectoryA(path.c_str()) != 0;
}

bool WindowsFiles::copyFile(const std::string& from, const std::string& to) {
  return CopyFileA(from.c_str(), to.c_str(), TRUE) != 0;
}

std::vector<FolderEntry> WindowsFiles::entries(const std::string& folder) {
  std::vector<FolderEntry> found;
  WIN32_FIND_DATAA entry{};
  const FindHandle search(FindFirstFileA((folder + "\\*.*").c_str(), &entry));
  if (!search) {
    return found;
  }
  do {
    if (!isDots(entry.cFileName)) {
      found.push_back({entry.cFileName, entry.dwFileAttributes});
    }
  } while (FindNextFileA(search.get(), &entry) != 0);
  return found;
}

}  // namespace vernoxa
