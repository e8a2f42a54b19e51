// The clipboard that all programs of the user share.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "system/file_path.h"

namespace vernoxa::inline system {

// The open clipboard; closed with this object. Keep it short: nobody else can use the clipboard meanwhile.
class ClipboardAccess {
 public:
  virtual ~ClipboardAccess() = default;
  // Whether it holds an enhanced metafile, or something that the system can convert to one.
  virtual bool hasMetafile() = 0;
  // The bytes of the older metafile of which the system makes the enhanced one, playing it; empty if it cannot be read.
  // `nullopt` if a program put an enhanced one there itself.
  virtual std::optional<std::string> olderMetafile() = 0;
  // False when there is none or the file cannot be written.
  virtual bool saveMetafile(const FilePath& path) = 0;
  // Replaces everything on the clipboard. The text is in the code page and ends at its first NUL byte.
  virtual void replaceByText(const std::string& text) = 0;
};

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  // Null if another program holds it.
  virtual std::unique_ptr<ClipboardAccess> open() = 0;
};

}  // namespace vernoxa::inline system
