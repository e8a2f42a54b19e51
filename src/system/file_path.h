// Where a file or folder is.
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace vernoxa::inline system {

// The true name of a file or folder, in UTF-8, so that it does not depend on the characters of the system's code page.
// No byte of a multi-byte character equals a separator: plain string operations are safe on it. Text from outside
// becomes a path by `TextConverter::path`, which knows its encoding.
class FilePath {
 public:
  FilePath() = default;
  // Up to the text's first NUL byte.
  static FilePath fromUtf8(std::string_view text);

  const std::string& utf8() const { return utf8_; }
  bool empty() const { return utf8_.empty(); }

  // Below this folder; "\" comes between, also when the folder is empty.
  FilePath operator/(std::string_view utf8Name) const;
  // Up to the last "\"; a path without one stays as it is.
  FilePath folder() const;

  friend auto operator<=>(const FilePath&, const FilePath&) = default;  // NOLINT(modernize-use-nullptr): its own 0

 private:
  explicit FilePath(std::string utf8) : utf8_(std::move(utf8)) {}

  std::string utf8_;
};

}  // namespace vernoxa::inline system
