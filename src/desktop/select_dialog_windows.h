// The dialog in which the user picks one of several parts.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "desktop/gdi_windows.h"

namespace vernoxa::desktop {

// Modal, owned by the host's active window of the calling thread, so that it never hides behind the host. Texts are
// UTF-8. Arrows move, Enter and a double click choose, Escape leaves.
class SelectDialog {
 public:
  explicit SelectDialog(const std::vector<std::string>& texts);

  // Position of the text that was chosen; `nullopt` if none was, or the dialog could not be shown.
  std::optional<std::size_t> run();

 private:
  static INT_PTR CALLBACK procedure(HWND dialog, UINT message, WPARAM word, LPARAM parameter);
  INT_PTR handle(UINT message, WPARAM word, LPARAM parameter);
  INT_PTR handleList(const NMHDR& notification);
  INT_PTR colourBackground(HDC context);

  void fill();
  void fitToTexts();
  int selectedRow() const;
  void selectFirst();
  void accept();

  std::vector<std::wstring> texts_;  // ready before the dialog opens: nothing may throw inside the system's calls
  Font font_;
  Brush background_;
  HWND dialog_ = nullptr;
  HWND list_ = nullptr;
  std::optional<std::size_t> chosen_;
};

}  // namespace vernoxa::desktop
