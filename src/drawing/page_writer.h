// Writes a page file from text that is made on the way.
#pragma once

#include <cstddef>
#include <string>

namespace vernoxa {

class OutputFile;

// Nothing more is written after the first failure; a full disk is as silent as a missing one.
class PageWriter {
 public:
  explicit PageWriter(OutputFile& file) : file_(file) {}

  // What is appended here comes next in the file. Valid until the next call.
  std::string& text();
  // False when not all was written.
  bool finish();

 private:
  static constexpr std::size_t pieceSize = std::size_t{64} * 1024;

  OutputFile& file_;
  bool failed_ = false;
  std::string text_;
};

}  // namespace vernoxa
