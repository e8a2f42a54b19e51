// Windows' clipboard.
#pragma once

#include "system/clipboard.h"

namespace vernoxa {

class WindowsClipboard final : public Clipboard {
 public:
  std::unique_ptr<ClipboardAccess> open() override;
};

}  // namespace vernoxa
