// The clipboard that all programs of the user share.
#pragma once

#include <memory>
#include <string>

#include "system/file_path.h"

namespace vernoxa::inline system {

// The clipboard while it is ours; closed with this object. Meant to be short-lived: nobody else can use it meanwhile.
class ClipboardAccess {
 public:
  virtual ~ClipboardAccess() = default;
  // An enhanced metafile lies there, or something that the system makes one of.
  virtual bool hasMetafile() = 0;
  // False when there is none or the file cannot be written.
  virtual bool saveMetafile(const FilePath& path) = 0;
  // In place of everything that was there. The text is in the code page and ends at its first NUL byte.
  virtual void replaceByText(const std::string& text) = 0;
};

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  // Null if another program holds it.
  virtual std::unique_ptr<ClipboardAccess> open() = 0;
};

}  // namespace vernoxa::inline system
