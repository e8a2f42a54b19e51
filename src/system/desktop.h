// The user's mouse, keyboard and choices.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vernoxa::inline system {

struct ScreenPoint {
  int x = 0;
  int y = 0;
};

// Windows' virtual key codes (winuser.h).
enum class Key { enter = 13, escape = 27 };
enum class KeyMove { press, release };

class Desktop {
 public:
  virtual ~Desktop() = default;
  // In pixels of the screen; 0, 0 when the system does not tell.
  virtual ScreenPoint cursor() = 0;
  // As if the user moved that key; whoever has the keyboard receives it.
  virtual void moveKey(Key key, KeyMove move) = 0;
  // Runs the action on a thread of its own and returns at once. Without a thread the action is dropped; exceptions of
  // the action end it in silence.
  virtual void runInBackground(std::function<void()> action) = 0;
  // Lets the user pick one of the texts (UTF-8), shown in their order. Returns once the user has answered; events of
  // the host are handled meanwhile. The position picked, or nothing.
  virtual std::optional<std::size_t> choose(const std::vector<std::string>& texts) = 0;
};

}  // namespace vernoxa::inline system
