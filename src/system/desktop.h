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
  // In pixels of the screen; 0, 0 if the system does not know.
  virtual ScreenPoint cursor() = 0;
  // As if the user pressed or released the key: the window with the keyboard focus receives it.
  virtual void moveKey(Key key, KeyMove move) = 0;
  // Runs the action on a thread of its own and returns at once. If no thread can be started, the action is dropped. An
  // exception ends the action and is not reported.
  virtual void runInBackground(std::function<void()> action) = 0;
  // Lets the user pick one of the texts (UTF-8), shown in their order. Returns once the user has answered; events of
  // the host are handled meanwhile. Gives the position picked, `nullopt` if the user cancelled.
  virtual std::optional<std::size_t> choose(const std::vector<std::string>& texts) = 0;
};

}  // namespace vernoxa::inline system
