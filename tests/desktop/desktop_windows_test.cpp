// The clipboard, pictures, keys and mouse of the system that the tests run on.
#include <windows.h>

#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <thread>

#include "desktop/clipboard_picture.h"
#include "desktop/gdi_windows.h"
#include "plugin/session.h"
#include "plugin/world.h"
#include "support/handle_probe_windows.h"
#include "system/clipboard.h"
#include "system/desktop.h"
#include "system/fake_code_page.h"
#include "system/files.h"
#include "system/registry.h"
#include "system/wide_text_windows.h"
#include "text/gbk_literal.h"

namespace vernoxa::desktop {
namespace {

void put(UINT format, HANDLE data) {
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  SetClipboardData(format, data);
  CloseClipboard();
}

// Red, from a quarter to three quarters of the frame's width and height; millimetres are the frame's.
void putDrawingOnClipboard(int millimetresAcross, int millimetresDown) {
  const RECT frame{0, 0, millimetresAcross * 100, millimetresDown * 100};
  const HDC context = CreateEnhMetaFileA(nullptr, nullptr, &frame, nullptr);
  const int across = GetDeviceCaps(context, HORZRES) * millimetresAcross / GetDeviceCaps(context, HORZSIZE);
  const int down = GetDeviceCaps(context, VERTRES) * millimetresDown / GetDeviceCaps(context, VERTSIZE);
  const Brush red(CreateSolidBrush(RGB(255, 0, 0)));
  const RECT middle{across / 4, down / 4, across * 3 / 4, down * 3 / 4};
  FillRect(context, &middle, red.get());
  put(CF_ENHMETAFILE, CloseEnhMetaFile(context));
}

class RealDesktop : public testing::Test {
 protected:
  RealDesktop() { CreateDirectoryA(folder.c_str(), nullptr); }
  ~RealDesktop() override {
    DeleteFileA((folder + "\\Cache\\Output\\Preview.bmp").c_str());
    for (const char* below : {"\\Cache\\Output", "\\Cache", ""}) {
      RemoveDirectoryA((folder + below).c_str());
    }
  }
  static std::string temporaryFolder() {
    char path[MAX_PATH] = "";
    GetTempPathA(MAX_PATH, path);
    return std::string(path) + u8"vernoxa 桌面 "_gbk + std::to_string(GetCurrentProcessId());
  }

  // Until it is done.
  void runInBackground() {
    const HANDLE done = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    world.desktop.runInBackground([done] { SetEvent(done); });
    EXPECT_EQ(WaitForSingleObject(done, 5000), WAIT_OBJECT_0);
    CloseHandle(done);
  }

  plugin::World world = plugin::realWorld();
  std::string folder = temporaryFolder();
  plugin::Session session{world, plugin::crashLogsOf(world, pathOf(folder + "\\bin")),
                          plugin::directoriesOf(pathOf(folder + "\\bin\\Vernoxa64.dll"))};
  const ClipboardPicture& picture = session.part<const ClipboardPicture>();
};

TEST_F(RealDesktop, TheCopiedDrawingBecomesAPreviewOnAWhiteGround) {
  putDrawingOnClipboard(80, 40);
  const FilePath path = picture.save();
  ASSERT_EQ(path, pathOf(folder + "\\Cache\\Output\\Preview.bmp"));
  EXPECT_FALSE(world.files.exists(pathOf("C:/Temp/test.emf")));

  const ScreenMeasures screen = world.pictures.screen();
  const int width = 80 * screen.pixelsAcross / screen.millimetresAcross;
  const int height = 40 * screen.pixelsDown / screen.millimetresDown;
  // The system's own reader sees the same picture.
  const Bitmap bitmap(
      static_cast<HBITMAP>(LoadImageA(nullptr, literalOf(path).c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE)));
  ASSERT_TRUE(bitmap);
  const MemoryContext context(CreateCompatibleDC(nullptr));
  const Selection selected(context.get(), bitmap.get());
  BITMAP size{};
  GetObjectA(bitmap.get(), sizeof size, &size);
  EXPECT_NEAR(size.bmWidth, width, 1);  // the frame's edges come back from the system rounded
  EXPECT_NEAR(size.bmHeight, height, 1);
  for (const auto& [column, row, colour] :
       {std::tuple(0, 0, RGB(255, 255, 255)), std::tuple(width - 2, height - 2, RGB(255, 255, 255)),
        std::tuple(width / 8, height / 2, RGB(255, 255, 255)), std::tuple(width / 2, height / 2, RGB(255, 0, 0)),
        std::tuple(width / 3, height * 2 / 3, RGB(255, 0, 0))}) {
    EXPECT_EQ(GetPixel(context.get(), column, row), colour) << column << " " << row;
  }
}

void putOlderOnClipboard(const std::string& bytes) {
  const METAFILEPICT picture{
      MM_ANISOTROPIC, 3000, 3000,
      SetMetaFileBitsEx(static_cast<UINT>(bytes.size()), reinterpret_cast<const BYTE*>(bytes.data()))};
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof picture);
  std::memcpy(GlobalLock(memory), &picture, sizeof picture);
  GlobalUnlock(memory);
  put(CF_METAFILEPICT, memory);
}

TEST_F(RealDesktop, AnOlderMetafileIsLookedThroughBeforeTheSystemPlaysIt) {
  std::string bytes(  // a header, a triangle and an end
      "\1\0\x9\0\0\x3\x16\0\0\0\0\0\xA\0\0\0\0\0"
      "\xA\0\0\0\x24\3\3\0\0\0\0\0\x5A\0\5\0\x28\0\x64\0"
      "\3\0\0\0\0\0",
      44);
  putOlderOnClipboard(bytes);
  EXPECT_FALSE(picture.save().empty());
  bytes[25] = '\x7F';  // many more points
  putOlderOnClipboard(bytes);
  EXPECT_TRUE(picture.save().empty());
  putDrawingOnClipboard(80, 40);
  EXPECT_FALSE(picture.save().empty());
}

TEST_F(RealDesktop, TextGoesToTheClipboardInTheCodePage) {
  for (const std::string written : {u8"电阻 R1"_gbk, "", "two\r\nlines"}) {
    world.clipboard.open()->replaceByText(written);
    const ClipboardLock lock(OpenClipboard(nullptr) != 0);
    EXPECT_STREQ(static_cast<const char*>(GlobalLock(GetClipboardData(CF_TEXT))), written.c_str());
    EXPECT_STREQ(static_cast<const wchar_t*>(GlobalLock(GetClipboardData(CF_UNICODETEXT))),
                 toWide(written, CP_ACP).c_str());
    EXPECT_THAT(static_cast<const LCID*>(GlobalLock(GetClipboardData(CF_LOCALE))),
                testing::Pointee(GetSystemDefaultLCID()));
  }
  EXPECT_TRUE(picture.save().empty());  // no drawing
  EXPECT_FALSE(world.files.exists(pathOf(folder + "\\Cache")));
}

TEST_F(RealDesktop, AClipboardThatAnotherHoldsIsNotOpened) {
  std::thread([this] {
    const HWND window = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_TRUE(OpenClipboard(window));
    std::thread([this] {
      EXPECT_EQ(world.clipboard.open(), nullptr);
      EXPECT_TRUE(picture.save().empty());
    }).join();
    CloseClipboard();
    DestroyWindow(window);
  }).join();
  EXPECT_NE(world.clipboard.open(), nullptr);
}

TEST_F(RealDesktop, KeysReachTheWindowThatHasTheKeyboard) {
  const HWND window =
      CreateWindowExA(0, "EDIT", "", WS_POPUP | WS_VISIBLE, 0, 0, 200, 100, nullptr, nullptr, nullptr, nullptr);
  SetForegroundWindow(window);
  SetFocus(window);
  world.desktop.moveKey(Key::escape, KeyMove::press);
  world.desktop.moveKey(Key::escape, KeyMove::release);
  world.desktop.runInBackground([desktop = &world.desktop] {
    desktop->moveKey(Key::enter, KeyMove::press);
    desktop->moveKey(Key::enter, KeyMove::release);
  });
  std::string keys;
  const ULONGLONG end = GetTickCount64() + 5000;
  while (keys.size() < 16 && GetTickCount64() < end) {
    MSG message{};
    if (PeekMessageA(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE) == 0) {
      Sleep(5);
    } else if (message.message == WM_KEYDOWN || message.message == WM_KEYUP) {
      keys += (message.message == WM_KEYDOWN ? "+" : "-") + std::to_string(message.wParam) + " ";
    }
  }
  DestroyWindow(window);
  EXPECT_EQ(keys, "+27 -27 +13 -13 ");
}

TEST_F(RealDesktop, TheCursorIsWhereItWasPut) {
  SetCursorPos(321, 123);
  EXPECT_THAT(world.desktop.cursor(), testing::FieldsAre(321, 123));
}

TEST_F(RealDesktop, AnExceptionOfABackgroundActionEndsThere) {
  world.desktop.runInBackground([] { throw std::bad_alloc(); });
  runInBackground();
}

TEST_F(RealDesktop, HoldsNoMoreHandlesAfterManyCalls) {
  putDrawingOnClipboard(20, 10);
  const RegistryPath software{RegistryRoot::currentUser, "Software\\Wine"};
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"picture", [this] { ASSERT_FALSE(picture.save().empty()); }},
      {"cursor", [this] { world.desktop.cursor(); }},
      {"key", [this] { world.desktop.moveKey(Key::escape, KeyMove::release); }},
      {"background", [this] { runInBackground(); }},
      {"subkeys", [&] { world.registry.subKeys(software); }},
      {"value", [&] { world.registry.text(software, "Version"); }},
      {"text", [this] { world.clipboard.open()->replaceByText("text"); }},
  };
  for (const auto& [name, call] : cases) {
    EXPECT_FALSE(leavesHandles(300, call)) << name;
  }
}

}  // namespace
}  // namespace vernoxa::desktop
