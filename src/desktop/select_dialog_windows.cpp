#include "desktop/select_dialog_windows.h"

#include <commctrl.h>

#include <algorithm>

#include "desktop/dialog_place.h"
#include "desktop/resource.h"
#include "system/wide_text_windows.h"

namespace vernoxa::desktop {
namespace {

constexpr COLORREF backgroundColour = RGB(230, 242, 242);
constexpr int listFontTenths = 180;        // of a point
constexpr int usualRoomForScrollBar = 20;  // at 96 points to the inch
constexpr int roomAroundText = 24;         // what a list view keeps free beside a text, at the largest screen scales
constexpr UINT selectFirstMessage = WM_APP;

HINSTANCE ownModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&ownModule), &module);
  return module;
}

// Wider where the screen is dense, or the user has the system draw wider scroll bars.
int roomForScrollBar() {
  const ScreenContext screen(GetDC(nullptr));
  const int scaled = MulDiv(usualRoomForScrollBar, GetDeviceCaps(screen.get(), LOGPIXELSX), 96);
  return std::max(scaled, GetSystemMetrics(SM_CXVSCROLL) + 2 * GetSystemMetrics(SM_CXBORDER));
}

Font listFont() {
  const ScreenContext screen(GetDC(nullptr));
  const int height = -MulDiv(listFontTenths, GetDeviceCaps(screen.get(), LOGPIXELSY), 720);
  return Font(CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                          CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"宋体"));
}

BOOL CALLBACK takeMainWindow(HWND window, LPARAM found) {
  const bool usable =
      IsWindowVisible(window) != FALSE && IsWindowEnabled(window) != FALSE && GetWindow(window, GW_OWNER) == nullptr;
  if (usable) {
    *reinterpret_cast<HWND*>(found) = window;
  }
  return usable ? FALSE : TRUE;
}

// While another program has the keyboard, no window of this thread is active. Then it is the host's main window, or a
// dialog in front of it.
HWND ownerWindow() {
  if (const HWND active = GetActiveWindow()) {
    return active;
  }
  HWND main = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), takeMainWindow, reinterpret_cast<LPARAM>(&main));
  return main != nullptr ? GetLastActivePopup(main) : nullptr;
}

Box boxOf(const RECT& rectangle) {
  return {rectangle.left, rectangle.top, rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
}

Box boxOf(HWND window) {
  RECT rectangle{};
  GetWindowRect(window, &rectangle);
  return boxOf(rectangle);
}

Box workAreaOf(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return boxOf(monitor.rcWork);
}

// Wider by `growth`, or moved to the right by it.
void stretch(HWND window, int growth) {
  const Box box = boxOf(window);
  SetWindowPos(window, nullptr, 0, 0, box.width + growth, box.height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void shift(HWND dialog, int control, int growth) {
  const HWND window = GetDlgItem(dialog, control);
  const Box box = boxOf(window);
  POINT corner{box.left + growth, box.top};
  ScreenToClient(dialog, &corner);
  SetWindowPos(window, nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

SelectDialog::SelectDialog(const std::vector<std::string>& texts)
    : font_(listFont()), background_(CreateSolidBrush(backgroundColour)) {
  texts_.reserve(texts.size());
  for (const std::string& text : texts) {
    texts_.push_back(toWide(text, CP_UTF8));
  }
}

std::optional<std::size_t> SelectDialog::run() {
  const INITCOMMONCONTROLSEX listView{sizeof listView, ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&listView);
  DialogBoxParamW(ownModule(), MAKEINTRESOURCEW(VERNOXA_SELECT_DIALOG), ownerWindow(), procedure,
                  reinterpret_cast<LPARAM>(this));
  return chosen_;
}

INT_PTR CALLBACK SelectDialog::procedure(HWND dialog, UINT message, WPARAM word, LPARAM parameter) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, parameter);
    reinterpret_cast<SelectDialog*>(parameter)->dialog_ = dialog;
  }
  // Some messages come before WM_INITDIALOG.
  auto* const self = reinterpret_cast<SelectDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
  return self != nullptr ? self->handle(message, word, parameter) : FALSE;
}

INT_PTR SelectDialog::handle(UINT message, WPARAM word, LPARAM parameter) {
  switch (message) {
    case WM_INITDIALOG:
      list_ = GetDlgItem(dialog_, VERNOXA_SELECT_LIST);
      fill();
      fitToTexts();
      return TRUE;
    case WM_CTLCOLORDLG:
      return colourBackground(reinterpret_cast<HDC>(word));
    case WM_NOTIFY:
      return handleList(*reinterpret_cast<const NMHDR*>(parameter));
    case selectFirstMessage:
      selectFirst();
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(word) == IDOK) {
        accept();
        return TRUE;
      }
      if (LOWORD(word) == IDCANCEL) {
        EndDialog(dialog_, IDCANCEL);
        return TRUE;
      }
      return FALSE;
    default:
      return FALSE;
  }
}

INT_PTR SelectDialog::handleList(const NMHDR& notification) {
  if (notification.hwndFrom != list_) {
    return FALSE;
  }
  if (notification.code == NM_DBLCLK && selectedRow() >= 0) {
    accept();
    return TRUE;
  }
  if (notification.code == LVN_KEYDOWN && selectedRow() < 0) {
    const WORD key = reinterpret_cast<const NMLVKEYDOWN&>(notification).wVKey;
    if (key == VK_DOWN || key == VK_UP) {
      // Without a selection the list would not start at its first row. The list handles the key first, then this
      // message.
      PostMessageW(dialog_, selectFirstMessage, 0, 0);
    }
  }
  return FALSE;
}

INT_PTR SelectDialog::colourBackground(HDC context) {
  SetBkColor(context, backgroundColour);
  return reinterpret_cast<INT_PTR>(background_.get());
}

void SelectDialog::fill() {
  SendMessageW(list_, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);
  ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);

  std::wstring heading = L"选择要跳转的部分";
  LVCOLUMNW column{};
  column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
  column.fmt = LVCFMT_LEFT;
  column.pszText = heading.data();
  column.cx = boxOf(list_).width - roomForScrollBar();
  SendMessageW(list_, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));

  // From the last to the first, each inserted before the others.
  std::for_each(texts_.rbegin(), texts_.rend(), [this](std::wstring& text) {
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.pszText = text.data();
    SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  });
  ListView_SetTextBkColor(list_, backgroundColour);
}

// A long text makes the dialog wider, as far as the screen goes.
void SelectDialog::fitToTexts() {
  const HWND owner = GetWindow(dialog_, GW_OWNER);
  const Box workArea = workAreaOf(owner != nullptr ? owner : dialog_);
  LRESULT widest = 0;
  for (const std::wstring& text : texts_) {
    widest = std::max(widest, SendMessageW(list_, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(text.c_str())));
  }
  const int missing = static_cast<int>(widest) + roomAroundText + roomForScrollBar() - boxOf(list_).width;
  const int growth = dialogGrowth(missing, boxOf(dialog_).width, workArea);
  stretch(dialog_, growth);
  stretch(list_, growth);
  shift(dialog_, IDOK, growth);
  shift(dialog_, IDCANCEL, growth);
  ListView_SetColumnWidth(list_, 0, boxOf(list_).width - roomForScrollBar());

  const Box place = centred(boxOf(dialog_), owner != nullptr ? boxOf(owner) : workArea, workArea);
  SetWindowPos(dialog_, nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

int SelectDialog::selectedRow() const {
  return ListView_GetNextItem(list_, -1, LVNI_SELECTED);
}

void SelectDialog::selectFirst() {
  constexpr UINT state = LVIS_SELECTED | LVIS_FOCUSED;
  ListView_SetItemState(list_, 0, state, state);
}

void SelectDialog::accept() {
  const int row = selectedRow();
  if (row >= 0) {
    chosen_ = static_cast<std::size_t>(row);
  }
  EndDialog(dialog_, IDOK);
}

}  // namespace vernoxa::desktop
