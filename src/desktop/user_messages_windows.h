// Message boxes through Windows.
#pragma once

#include "system/user_messages.h"

namespace vernoxa {

class WindowsUserMessages final : public UserMessages {
 public:
  void show(std::u8string_view text, MessageIcon icon) override;
};

}  // namespace vernoxa
