// Windows' clipboard.
#pragma once

#include "core/clipboard.h"

namespace vernoxa {

class WindowsClipboard final : public Clipboard {
 public:
  std::unique_ptr<ClipboardAccess> open() override;
};

}  // namespace vernoxa
