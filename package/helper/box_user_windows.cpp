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
};

User& user() {
  static User one;
  return one;
}

std::string textIn(HWND window) {
  std::array<wchar_t, longest> wide{};
  GetWindowTextW(window, wide.data(), static_cast<int>(wide.size()));
  std::array<char, 3 * longest> text{};
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), -1, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
  return text.data();
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
}
