// A Tcl extension for tests: it answers the message boxes and dialogs of its own process, as a user in a hurry would,
// and keeps what they showed. `boxes` gives them, each a list of the caption and the texts in it, and forgets them.
#include <windows.h>

#include <commctrl.h>
#include <tcl.h>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int longestText = 1000;
constexpr DWORD pause = 10;  // milliseconds

using Texts = std::vector<std::wstring>;

std::mutex guard;
std::vector<Texts> seen;  // with `guard`

Texts rowsOf(HWND list) {
  Texts rows;
  const LRESULT count = SendMessageW(list, LVM_GETITEMCOUNT, 0, 0);
  for (LRESULT row = 0; row < count; ++row) {
    std::wstring text(longestText, L'\0');
    LVITEMW item{};
    item.pszText = text.data();
    item.cchTextMax = longestText;
    SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    rows.emplace_back(text.c_str());
  }
  return rows;
}

std::wstring textOf(HWND window) {
  std::wstring text(longestText, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), longestText)));
  return text;
}

BOOL CALLBACK addTexts(HWND child, LPARAM texts) {
  Texts& all = *reinterpret_cast<Texts*>(texts);
  wchar_t name[40] = L"";
  GetClassNameW(child, name, 40);
  if (std::wstring_view(name) == WC_LISTVIEWW) {
    const Texts rows = rowsOf(child);
    all.insert(all.end(), rows.begin(), rows.end());
    LVITEMW first{};
    first.state = first.stateMask = LVIS_SELECTED;
    SendMessageW(child, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&first));
  } else if (std::wstring_view(name) == WC_STATICW && !textOf(child).empty()) {
    all.push_back(textOf(child));
  }
  return TRUE;
}

HWND openBox() {
  HWND box = nullptr;
  while ((box = FindWindowExW(nullptr, box, L"#32770", nullptr)) != nullptr) {
    DWORD process = 0;
    GetWindowThreadProcessId(box, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(box) != FALSE) {
      return box;
    }
  }
  return nullptr;
}

void watch() {
  while (true) {
    if (const HWND box = openBox()) {
      Texts texts{textOf(box)};
      EnumChildWindows(box, addTexts, reinterpret_cast<LPARAM>(&texts));
      {
        const std::lock_guard lock(guard);
        seen.push_back(std::move(texts));
      }
      PostMessageW(box, WM_COMMAND, IDOK, 0);
      while (IsWindow(box) != FALSE) {
        Sleep(pause);
      }
    }
    Sleep(pause);
  }
}

int boxes(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  const std::lock_guard lock(guard);
  Tcl_Obj* const all = Tcl_NewListObj(0, nullptr);
  for (const Texts& texts : seen) {
    Tcl_Obj* const box = Tcl_NewListObj(0, nullptr);
    for (const std::wstring& text : texts) {
      const auto* const characters = reinterpret_cast<const Tcl_UniChar*>(text.data());
      Tcl_ListObjAppendElement(interp, box, Tcl_NewUnicodeObj(characters, static_cast<int>(text.size())));
    }
    Tcl_ListObjAppendElement(interp, all, box);
  }
  seen.clear();
  Tcl_SetObjResult(interp, all);
  return TCL_OK;
}

}  // namespace

extern "C" __declspec(dllexport) int Boxwatch_Init(Tcl_Interp* interp) {
  if (Tcl_InitStubs(interp, "8.6", 0) == nullptr) {
    return TCL_ERROR;
  }
  Tcl_CreateObjCommand(interp, "boxes", boxes, nullptr, nullptr);
  std::thread(watch).detach();
  return TCL_OK;
}
