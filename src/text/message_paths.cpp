#include "text/message_paths.h"

#include <optional>

#include "system/files.h"
#include "system/log.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::inline text {

std::string MessagePaths::of(const FilePath& path) const {
  if (const auto name = converter_.nameInCodePage(path)) {
    return *name;
  }
  const FilePath shortPath = files_.shortPath(path);
  if (const auto name = converter_.nameInCodePage(shortPath); name && !name->empty()) {
    return *name;
  }
  if (isUtf8WithThreeByteSequence(path.utf8())) {
    return path.utf8();
  }
  logs_.openTraffic().writeLine("no name in the code page: " + converter_.utf8ToAnsi(path.utf8()));
  return {};
}

std::string MessagePaths::ofDesign(std::string_view hostPath) {
  if (isAscii(hostPath)) {
    return std::string(hostPath);  // as most are, in every encoding
  }
  const auto plain = utf8OfTcl(hostPath);
  const bool converted = looksLikeUtf8Chinese(hostPath);
  // All other paths stay as they are, except one that is certainly UTF-8 and that the code page cannot name.
  const bool mayBeNameless = plain && (*plain != hostPath || isUtf8WithThreeByteSequence(hostPath));
  if (!plain || !(converted || mayBeNameless)) {
    return std::string(hostPath);
  }
  const FilePath path = FilePath::fromUtf8(*plain);
  const auto name = converter_.nameInCodePage(path);
  if (!name) {
    return otherName(std::string(hostPath), path);
  }
  return converted || *name == *plain ? *name : std::string(hostPath);
}

// A short name, which the code page has, opens the same file.
std::string MessagePaths::otherName(const std::string& hostPath, const FilePath& path) {
  std::string name = keptName(hostPath);
  if (name.empty()) {
    name = converter_.nameInCodePage(files_.shortPath(path)).value_or(std::string());
    const bool first = keepName(hostPath, name);
    if (first && name.empty()) {
      logs_.openTraffic().writeLine("not reported, no name in the code page: " + converter_.utf8ToAnsi(hostPath));
    }
  }
  return name;
}

std::string MessagePaths::keptName(const std::string& hostPath) const {
  const std::lock_guard lock(guard_);
  const auto found = otherNames_.find(hostPath);
  return found == otherNames_.end() ? std::string() : found->second;
}

// True if no name was kept for that design before.
bool MessagePaths::keepName(const std::string& hostPath, const std::string& name) {
  const std::lock_guard lock(guard_);
  return otherNames_.insert_or_assign(hostPath, name).second;
}

}  // namespace vernoxa::inline text
