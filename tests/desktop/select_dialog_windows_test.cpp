// Drives the real dialog: one thread shows it, another plays the user.
#include "desktop/select_dialog_windows.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <thread>

#include "desktop/resource.h"
#include "support/handle_probe_windows.h"
#include "system/wide_text_windows.h"
#include "text/text.h"

namespace vernoxa::desktop {
namespace {

constexpr const wchar_t* caption = L"选择要跳转的器件分部";
constexpr COLORREF groundColour = RGB(230, 242, 242);

// "U1", "电阻 R2", "三" in UTF-8.
const std::vector<std::string> threeTexts = {"U1", "\xE7\x94\xB5\xE9\x98\xBB R2", "\xE4\xB8\x89"};

bool waitUntil(const std::function<bool()>& condition) {
  for (int pause = 0; pause < 2000 && !condition(); ++pause) {
    Sleep(5);
  }
  return condition();
}

class Seen {
 public:
  explicit Seen(HWND window) : dialog(window), list(GetDlgItem(window, VERNOXA_SELECT_LIST)) {}

  void key(WPARAM code) const { PostMessageW(list, WM_KEYDOWN, code, 0); }
  // A key that moves the selection. What it sets off goes before the user's next key, but behind a posted one.
  void arrow(WPARAM code) const {
    const int before = selected();
    key(code);
    waitUntil([&] { return selected() != before; });
  }
  int selected() const { return static_cast<int>(ask(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED)); }
  // Below the last row for a row that is not there.
  void doubleClick(int row) const {
    RECT first{LVIR_BOUNDS, 0, 0, 0};
    ask(LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&first));
    const LPARAM place = MAKELPARAM(first.left + 20, first.top + (first.bottom - first.top) * (2 * row + 1) / 2);
    for (const UINT message : std::array<UINT, 4>{WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP}) {
      PostMessageW(list, message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, place);
    }
  }
  void select(int row) const { ListView_SetItemState(list, row, LVIS_SELECTED, LVIS_SELECTED); }
  void press(int button) const { PostMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0); }
  LRESULT ask(UINT message, WPARAM word = 0, LPARAM parameter = 0) const {
    return SendMessageW(list, message, word, parameter);
  }
  std::wstring row(int index) const {
    wchar_t text[50] = L"";
    LVITEMW item{};
    item.pszText = text;
    item.cchTextMax = 50;
    ask(LVM_GETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    return text;
  }
  static RECT box(HWND window) {
    RECT rectangle{};
    GetWindowRect(window, &rectangle);
    return rectangle;
  }

  HWND dialog;
  HWND list;
};

using User = std::function<void(const Seen&)>;

// Another run of these tests may show its own on the same desktop.
HWND visibleDialog(DWORD thread) {
  HWND dialog = nullptr;
  do {
    dialog = FindWindowExW(nullptr, dialog, L"#32770", caption);
  } while (dialog != nullptr && GetWindowThreadProcessId(dialog, nullptr) != thread);
  return IsWindowVisible(dialog) != FALSE ? dialog : nullptr;
}

std::optional<std::size_t> withUser(const std::vector<std::string>& texts, const User& user) {
  std::thread thread([&user, shows = GetCurrentThreadId()] {
    HWND dialog = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (dialog = visibleDialog(shows)) != nullptr; }));
    user(Seen(dialog));
    EXPECT_TRUE(waitUntil([dialog] { return IsWindow(dialog) == FALSE; })) << "the user's moves did not end the dialog";
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  });
  const auto chosen = SelectDialog(texts).run();
  thread.join();
  return chosen;
}

TEST(SelectDialogTest, ShowsTheTextsAsTheHostExpectsThem) {
  withUser(threeTexts, [](const Seen& seen) {
    EXPECT_EQ(seen.row(0) + L"|" + seen.row(1) + L"|" + seen.row(2), L"U1|电阻 R2|三");
    EXPECT_EQ(seen.ask(LVM_GETITEMCOUNT), 3);
    EXPECT_EQ(seen.ask(LVM_GETEXTENDEDLISTVIEWSTYLE), 33);
    EXPECT_EQ(seen.ask(LVM_GETTEXTBKCOLOR), static_cast<LRESULT>(groundColour));
    EXPECT_EQ(seen.selected(), -1);

    wchar_t heading[50] = L"";
    LVCOLUMNW column{LVCF_TEXT | LVCF_WIDTH | LVCF_FMT, 0, 0, heading, 50, 0, 0, 0, 0, 0, 0};
    seen.ask(LVM_GETCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    EXPECT_STREQ(heading, L"选择要跳转的部分");
    EXPECT_EQ(column.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_LEFT);
    EXPECT_EQ(column.cx, Seen::box(seen.list).right - Seen::box(seen.list).left - 20);

    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(seen.ask(WM_GETFONT)), sizeof font, &font);
    EXPECT_STREQ(font.lfFaceName, L"宋体");
    const HDC screen = GetDC(nullptr);
    EXPECT_EQ(font.lfHeight, -MulDiv(18, GetDeviceCaps(screen, LOGPIXELSY), 72));
    LOGBRUSH brush{};
    const LRESULT ground = SendMessageW(seen.dialog, WM_CTLCOLORDLG, reinterpret_cast<WPARAM>(screen),
                                        reinterpret_cast<LPARAM>(seen.dialog));
    GetObjectW(reinterpret_cast<HBRUSH>(ground), sizeof brush, &brush);
    EXPECT_EQ(brush.lbColor, groundColour);
    EXPECT_EQ(GetBkColor(screen), groundColour);
    ReleaseDC(nullptr, screen);
    seen.key(VK_ESCAPE);
  });
}

TEST(SelectDialogTest, KeysAndMouseChoose) {
  const struct {
    const char* name;
    User user;
    int chosen;  // -1: none
  } cases[] = {
      {"Enter without a selection", [](const Seen& seen) { seen.key(VK_RETURN); }, -1},
      {"down", [](const Seen& seen) { seen.arrow(VK_DOWN), seen.key(VK_RETURN); }, 0},
      {"up", [](const Seen& seen) { seen.arrow(VK_UP), seen.key(VK_RETURN); }, 0},
      {"down twice", [](const Seen& seen) { seen.arrow(VK_DOWN), seen.arrow(VK_DOWN), seen.key(VK_RETURN); }, 1},
      {"to the end", [](const Seen& seen) { seen.arrow(VK_END), seen.key(VK_RETURN); }, 2},
      {"down and up", [](const Seen& seen) { seen.arrow(VK_END), seen.arrow(VK_UP), seen.key(VK_RETURN); }, 1},
      {"Escape", [](const Seen& seen) { seen.arrow(VK_DOWN), seen.key(VK_ESCAPE); }, -1},
      {"double click", [](const Seen& seen) { seen.doubleClick(2); }, 2},
      {"double click below", [](const Seen& seen) { seen.doubleClick(4), seen.key(VK_ESCAPE); }, -1},
      {"OK", [](const Seen& seen) { seen.select(1), seen.press(IDOK); }, 1},
      {"Cancel", [](const Seen& seen) { seen.select(1), seen.press(IDCANCEL); }, -1},
      {"closed", [](const Seen& seen) { seen.select(1), PostMessageW(seen.dialog, WM_CLOSE, 0, 0); }, -1},
  };
  for (const auto& each : cases) {
    const auto chosen = withUser(threeTexts, each.user);
    EXPECT_EQ(chosen ? static_cast<int>(*chosen) : -1, each.chosen) << each.name;
  }
  EXPECT_FALSE(withUser({}, [](const Seen& seen) { seen.key(VK_DOWN), seen.key(VK_RETURN); }));
}

TEST(SelectDialogTest, IsOwnedByTheHostsWindowAlsoWhileAnotherProgramIsActive) {
  for (const int show : {SW_SHOW, SW_SHOWNOACTIVATE}) {
    const HWND host = CreateWindowExA(0, "STATIC", "host", WS_OVERLAPPEDWINDOW, 100, 100, 600, 500, nullptr, nullptr,
                                      nullptr, nullptr);
    ShowWindow(host, show);
    withUser(threeTexts, [host](const Seen& seen) {
      EXPECT_EQ(GetWindow(seen.dialog, GW_OWNER), host);
      EXPECT_FALSE(IsWindowEnabled(host));
      const RECT dialog = Seen::box(seen.dialog);
      const RECT owner = Seen::box(host);
      EXPECT_NEAR(dialog.left + dialog.right, owner.left + owner.right, 2);
      EXPECT_NEAR(dialog.top + dialog.bottom, owner.top + owner.bottom, 2);
      seen.key(VK_ESCAPE);
    });
    EXPECT_TRUE(IsWindowEnabled(host));
    DestroyWindow(host);
  }
}

TEST(SelectDialogTest, LongTextsWidenItAsFarAsTheScreenGoes) {
  RECT area{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  for (const std::size_t length : {25U, 3000U}) {
    const std::string text = replaceAll(std::string(length, '.'), ".", "\xE7\x94\xB5");
    withUser({"U1", text}, [&](const Seen& seen) {
      const RECT dialog = Seen::box(seen.dialog);
      const RECT list = Seen::box(seen.list);
      const LRESULT needed = seen.ask(LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(toWide(text, CP_UTF8).c_str()));
      EXPECT_TRUE(length > 1000 ? dialog.right - dialog.left == area.right - area.left
                                : seen.ask(LVM_GETCOLUMNWIDTH) >= needed + 12);
      EXPECT_GE(dialog.left, area.left);
      EXPECT_LE(dialog.right, area.right);
      EXPECT_EQ(seen.ask(LVM_GETCOLUMNWIDTH), list.right - list.left - 20);
      EXPECT_EQ(Seen::box(GetDlgItem(seen.dialog, IDCANCEL)).right, list.right);
      seen.key(VK_ESCAPE);
    });
  }
}

TEST(SelectDialogTest, TheOtherTemplatesStandInTheResources) {
  const std::pair<int, std::vector<const wchar_t*>> cases[] = {
      {VERNOXA_INPUT_DIALOG, {L"请输入内容", L"确定", L"取消"}},
      {VERNOXA_MODULE_DIALOG, {L"模块复用", L"所选电路售价:", L"视图模式切换:", L"提取"}},
  };
  for (const auto& [number, texts] : cases) {
    const HWND dialog = CreateDialogParamW(
        GetModuleHandleW(nullptr), MAKEINTRESOURCEW(number), nullptr,
        [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
    wchar_t title[50] = L"";
    GetWindowTextW(dialog, title, 50);
    EXPECT_STREQ(title, texts[0]);
    for (std::size_t control = 1; control < texts.size(); ++control) {
      EXPECT_NE(FindWindowExW(dialog, nullptr, nullptr, texts[control]), nullptr) << control;
    }
    DestroyWindow(dialog);
  }
}

TEST(SelectDialogTest, HoldsNoMoreHandlesAfterManyCalls) {
  EXPECT_FALSE(leavesHandles(20, [] {
    ASSERT_EQ(withUser(threeTexts, [](const Seen& seen) { seen.arrow(VK_DOWN), seen.key(VK_RETURN); }), 0U);
  }));
}

}  // namespace
}  // namespace vernoxa::desktop
