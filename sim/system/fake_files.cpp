#include "system/fake_files.h"

#include <algorithm>
#include <cctype>

namespace vernoxa {
namespace {

constexpr std::uint32_t fileMissingError = 2;    // ERROR_FILE_NOT_FOUND
constexpr std::uint32_t folderMissingError = 3;  // ERROR_PATH_NOT_FOUND
constexpr std::uint32_t fileExistsError = 80;    // ERROR_FILE_EXISTS
constexpr std::uint32_t diskFullError = 112;     // ERROR_DISK_FULL

std::string_view takeName(std::string_view& path) {
  const std::size_t end = std::min(path.find_first_of("\\/"), path.size());
  const std::string_view name = path.substr(0, end);
  path.remove_prefix(std::min(end + 1, path.size()));
  return name;
}

std::string_view withoutEnd(std::string_view name) {
  return name.substr(0, name.find_last_not_of(". ") + 1);
}

// As Windows resolves a path: no "." and "..", no dots and spaces where names end. What begins with "\\", the name of a
// server or "?" and ".", stays as it is.
std::string resolved(std::string_view path) {
  std::string full;
  if (path.starts_with("\\\\") || path.starts_with("//")) {
    path.remove_prefix(2);
    full = "\\\\";
    full += takeName(path);
  } else {
    full = withoutEnd(takeName(path));
  }
  const std::size_t first = full.size();
  while (!path.empty()) {
    const std::string_view name = takeName(path);
    if (name == ".." && full.size() > first) {
      full.resize(full.rfind('\\'));
    }
    if (const std::string_view kept = withoutEnd(name); !kept.empty()) {
      full += '\\';
      full += kept;
    }
  }
  return full;
}

// One key for all spellings of a path.
std::string keyOf(const FilePath& path) {
  std::string key = resolved(path.utf8());
  std::transform(key.begin(), key.end(), key.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return key;
}

std::string folderOf(const std::string& key) {
  return key.substr(0, key.rfind('\\'));
}

bool isDrive(const std::string& key) {
  return key.size() == 2 && key[1] == ':';
}

bool isDirectory(std::uint32_t attributes) {
  return (attributes & directoryAttribute) != 0;
}

}  // namespace

class FakeFiles::Output final : public OutputFile {
 public:
  Output(FakeFiles& files, std::shared_ptr<std::string> bytes) : files_(files), bytes_(std::move(bytes)) {}
  bool write(std::string_view bytes) override {
    if (files_.faults.strike()) {
      return false;
    }
    const std::lock_guard lock(files_.guard_);
    bytes_->append(bytes);
    return true;
  }

 private:
  FakeFiles& files_;
  std::shared_ptr<std::string> bytes_;
};

FilePath FakeFiles::fullPath(const FilePath& path) {
  // As Windows does, the last separator stays.
  const bool open = path.utf8().ends_with('\\') || path.utf8().ends_with('/');
  return faults.strike() ? FilePath() : FilePath::fromUtf8(resolved(path.utf8()) + (open ? "\\" : ""));
}

FilePath FakeFiles::shortPath(const FilePath& path) {
  if (!Files::exists(path)) {
    return {};
  }
  const auto found = shortPaths.find(path);
  return found != shortPaths.end() ? found->second : path;
}

void FakeFiles::addFolder(const FilePath& path, std::uint32_t attributes) {
  const std::string key = keyOf(path);
  if (const std::string parent = folderOf(key); parent != key) {
    addFolder(FilePath::fromUtf8(path.utf8().substr(0, parent.size())));
  }
  const std::lock_guard lock(guard_);
  nodes_.try_emplace(key, Node{path, attributes, nullptr});
}

void FakeFiles::addFile(const FilePath& path, std::string_view bytes, std::uint32_t attributes) {
  addFolder(FilePath::fromUtf8(path.utf8().substr(0, folderOf(keyOf(path)).size())));
  const std::lock_guard lock(guard_);
  nodes_[keyOf(path)] = {path, attributes, std::make_shared<std::string>(bytes)};
}

std::string FakeFiles::bytes(const FilePath& path) const {
  const std::lock_guard lock(guard_);
  const auto found = nodes_.find(keyOf(path));
  return found == nodes_.end() || !found->second.bytes ? "(no file)" : *found->second.bytes;
}

std::vector<std::string> FakeFiles::paths() const {
  const std::lock_guard lock(guard_);
  std::vector<std::string> all;
  for (const auto& [key, node] : nodes_) {
    all.push_back(literalOf(node.path));
  }
  return all;
}

std::vector<std::string> FakeFiles::changes() const {
  const std::lock_guard lock(guard_);
  return changes_;
}

std::uint32_t FakeFiles::attributes(const FilePath& path) {
  const std::lock_guard lock(guard_);
  const Node* const node = faults.strike() ? nullptr : find(path);
  return node != nullptr ? node->attributes : noAttributes;
}

std::uint32_t FakeFiles::reparseTag(const FilePath& path) {
  const auto found = reparseTags.find(path);
  return faults.strike() || found == reparseTags.end() ? 0 : found->second;
}

std::optional<std::string> FakeFiles::readStart(const FilePath& path, std::size_t most) {
  const std::lock_guard lock(guard_);
  const Node* const node = faults.strike() ? nullptr : find(path);
  return node != nullptr && node->bytes ? std::optional(node->bytes->substr(0, most)) : std::nullopt;
}

std::unique_ptr<OutputFile> FakeFiles::openForAppending(const FilePath& path) {
  const std::lock_guard lock(guard_);
  const Node* const node = fileForWriting(path, false);
  return node != nullptr ? std::make_unique<Output>(*this, node->bytes) : nullptr;
}

std::unique_ptr<OutputFile> FakeFiles::create(const FilePath& path) {
  const std::lock_guard lock(guard_);
  const Node* const node = fileForWriting(path, true);
  return node != nullptr ? std::make_unique<Output>(*this, node->bytes) : nullptr;
}

bool FakeFiles::createFolder(const FilePath& path) {
  const std::lock_guard lock(guard_);
  if (faults.strike() || find(path) != nullptr || !hasItsFolder(path)) {
    return false;
  }
  change("folder", path);
  nodes_[keyOf(path)] = {path, directoryAttribute, nullptr};
  return true;
}

bool FakeFiles::removeFile(const FilePath& path) {
  const std::lock_guard lock(guard_);
  const Node* const node = faults.strike() ? nullptr : find(path);
  if (node == nullptr || !node->bytes || (node->attributes & readOnlyAttribute) != 0) {
    return false;
  }
  change("remove", path);
  return nodes_.erase(keyOf(path)) == 1;
}

bool FakeFiles::removeFolder(const FilePath& path) {
  const std::lock_guard lock(guard_);
  const Node* const node = faults.strike() ? nullptr : find(path);
  if (node == nullptr || node->bytes) {
    return false;
  }
  const auto tag = reparseTags.find(path);  // without one it is a link
  const bool link =
      (node->attributes & reparsePointAttribute) != 0 && (tag == reparseTags.end() || (tag->second & 0x20000000U) != 0);
  if (!link && hasEntries(path)) {
    return false;
  }
  change("remove", path);
  return nodes_.erase(keyOf(path)) == 1;
}

bool FakeFiles::replaceFile(const FilePath& from, const FilePath& to) {
  const std::lock_guard lock(guard_);
  const Node* const source = faults.strike() ? nullptr : find(from);
  const Node* const target = find(to);
  const bool replaceable = target == nullptr || (target->bytes && (target->attributes & 1U) == 0 && !held.contains(to));
  if (source == nullptr || !source->bytes || !replaceable || !hasItsFolder(to)) {
    return false;
  }
  change("rename", to);
  Node moved = *source;
  moved.path = to;
  nodes_.erase(keyOf(from));
  nodes_[keyOf(to)] = std::move(moved);
  return true;
}

CopyResult FakeFiles::copyFile(const FilePath& from, const FilePath& to) {
  const std::lock_guard lock(guard_);
  if (faults.strike()) {
    return {diskFullError};
  }
  const Node* const source = find(from);
  if (source == nullptr || !source->bytes) {
    return {fileMissingError};
  }
  if (find(to) != nullptr) {
    return {fileExistsError};
  }
  if (!hasItsFolder(to)) {
    return {folderMissingError};
  }
  change("copy", to);
  nodes_[keyOf(to)] = {to, source->attributes & ~readOnlyAttribute, std::make_shared<std::string>(*source->bytes)};
  return {};
}

std::vector<FolderEntry> FakeFiles::entries(const FilePath& folder) {
  const std::lock_guard lock(guard_);
  std::vector<FolderEntry> found;
  if (faults.strike()) {
    return found;
  }
  const std::string key = keyOf(folder);
  for (const auto& [each, node] : nodes_) {
    if (each != key && !isDrive(each) && folderOf(each) == key) {
      found.push_back({node.path.utf8().substr(key.size() + 1), node.attributes});
    }
  }
  return found;
}

FakeFiles::Node* FakeFiles::find(const FilePath& path) {
  const std::string key = keyOf(path);
  if (isDrive(key)) {
    nodes_.try_emplace(key, Node{path, directoryAttribute, nullptr});
  }
  const auto found = nodes_.find(key);
  return found == nodes_.end() ? nullptr : &found->second;
}

bool FakeFiles::hasItsFolder(const FilePath& path) {
  const Node* const folder = find(FilePath::fromUtf8(folderOf(keyOf(path))));
  return folder != nullptr && isDirectory(folder->attributes);
}

FakeFiles::Node* FakeFiles::fileForWriting(const FilePath& path, bool emptied) {
  if (faults.strike() || !hasItsFolder(path)) {
    return nullptr;
  }
  Node* const existing = find(path);
  if (existing == nullptr) {
    change("create", path);
    return &(nodes_[keyOf(path)] = {path, 0, std::make_shared<std::string>()});
  }
  if (!existing->bytes || (existing->attributes & readOnlyAttribute) != 0) {
    return nullptr;
  }
  if (emptied) {
    change("create", path);
    existing->bytes->clear();
  }
  return existing;
}

bool FakeFiles::hasEntries(const FilePath& folder) const {
  const std::string prefix = keyOf(folder) + "\\";
  const auto next = nodes_.lower_bound(prefix);
  return next != nodes_.end() && next->first.starts_with(prefix);
}

void FakeFiles::change(const char* what, const FilePath& path) {
  changes_.push_back(std::string(what) + " " + literalOf(path));
}

}  // namespace vernoxa
