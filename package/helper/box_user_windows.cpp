#include "helper_windows.h"
// after windows.h
#include <commctrl.h>

#include <array>
#include <set>
#include <string>

namespace {

constexpr UINT looksEvery = 20;       // milliseconds
constexpr int messageText = 0xFFFF;   // the control of a message box that holds its text
constexpr std::size_t longest = 500;  // characters of a text

struct User {
  Tcl_Interp* interp = nullptr;
  Tcl_Obj* script = nullptr;
  std::set<HWND> answered;
  HWND box = nullptr;  // for which the script runs
};

User& user() {
  static User one;
  return one;
}

std::string textIn(HWND window) {
  std::array<wchar_t, longest> wide{};
  GetWindowTextW(window, wide.data(), static_cast<int>(wide.size()));
  return utf8Of(wide.data());
}

// The rows of a list, the texts of labels.
BOOL CALLBACK appendTextsIn(HWND child, LPARAM given) {
  const auto append = [given](const std::string& text) {
    Tcl_ListObjAppendElement(nullptr, reinterpret_cast<Tcl_Obj*>(given), Tcl_NewStringObj(text.c_str(), -1));
  };
  std::array<wchar_t, 40> name{};
  GetClassNameW(child, name.data(), static_cast<int>(name.size()));
  if (std::wstring_view(name.data()) == WC_STATICW && GetWindowTextLengthW(child) > 0) {
    append(textIn(child));
  }
  const int rows = std::wstring_view(name.data()) == WC_LISTVIEWW ? ListView_GetItemCount(child) : 0;
  for (int row = 0; row < rows; ++row) {
    std::array<wchar_t, longest> text{};
    LVITEMW item{};
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    SendMessageW(child, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    append(utf8Of(text.data()));
  }
  return TRUE;
}

int boxTexts(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  Tcl_Obj* const texts = Tcl_NewListObj(0, nullptr);
  Tcl_ListObjAppendElement(nullptr, texts, Tcl_NewStringObj(textIn(user().box).c_str(), -1));
  EnumChildWindows(user().box, appendTextsIn, reinterpret_cast<LPARAM>(texts));
  Tcl_SetObjResult(interp, texts);
  return TCL_OK;
}

BOOL CALLBACK takeNewBox(HWND window, LPARAM found) {
  std::array<wchar_t, 16> name{};
  GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  const bool isNew = std::wstring(name.data()) == L"#32770" && IsWindowVisible(window) != FALSE &&
                     user().answered.insert(window).second;
  if (isNew) {
    *reinterpret_cast<HWND*>(found) = window;
  }
  return isNew ? FALSE : TRUE;
}

void CALLBACK look(HWND, UINT, UINT_PTR, DWORD) {
  HWND box = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), takeNewBox, reinterpret_cast<LPARAM>(&box));
  if (box == nullptr) {
    return;
  }
  user().box = box;
  const HWND inner = GetDlgItem(box, messageText);
  Tcl_Obj* const command = Tcl_DuplicateObj(user().script);
  Tcl_IncrRefCount(command);
  Tcl_ListObjAppendElement(nullptr, command, Tcl_NewStringObj(textIn(inner != nullptr ? inner : box).c_str(), -1));
  if (Tcl_EvalObjEx(user().interp, command, TCL_EVAL_GLOBAL) != TCL_OK) {
    Tcl_BackgroundException(user().interp, TCL_ERROR);
  }
  Tcl_DecrRefCount(command);
  user().answered.erase(box);  // the system may give the next box the same handle
  if (const HWND list = FindWindowExW(box, nullptr, WC_LISTVIEWW, nullptr)) {
    ListView_SetItemState(list, 0, LVIS_SELECTED, LVIS_SELECTED);
  }
  SendMessageW(box, WM_COMMAND, IDOK, 0);
}

int onBox(ClientData, Tcl_Interp* interp, int count, Tcl_Obj* const* words) {
  if (count != 2) {
    Tcl_WrongNumArgs(interp, 1, words, "script");
    return TCL_ERROR;
  }
  if (user().script == nullptr) {
    SetTimer(nullptr, 0, looksEvery, look);
  } else {
    Tcl_DecrRefCount(user().script);
  }
  user().interp = interp;
  user().script = words[1];
  Tcl_IncrRefCount(words[1]);
  return TCL_OK;
}

}  // namespace

void createBoxCommands(Tcl_Interp* interp) {
  Tcl_CreateObjCommand(interp, "onBox", onBox, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "boxTexts", boxTexts, nullptr, nullptr);
}
