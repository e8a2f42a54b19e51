// Message boxes to the user.
#pragma once

#include <string_view>

namespace vernoxa::inline system {

enum class MessageIcon { none, information };

class UserMessages {
 public:
  virtual ~UserMessages() = default;
  // Shows a text (UTF-8, so that it reads the same in every code page) with the caption "澜图助手", an OK button and no
  // owner window; returns once the user has answered. If the system cannot show it, nothing happens.
  virtual void show(std::u8string_view text, MessageIcon icon) = 0;
};

}  // namespace vernoxa::inline system
