#include "drawing/page_writer.h"

#include "system/files.h"

namespace vernoxa {

std::string& PageWriter::text() {
  if (text_.size() >= pieceSize) {
    finish();
  }
  return text_;
}

bool PageWriter::finish() {
  failed_ = failed_ || !file_.write(text_);
  text_.clear();
  return !failed_;
}

}  // namespace vernoxa
