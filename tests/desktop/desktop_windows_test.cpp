// The clipboard, pictures, keys and mouse of the system that the tests run on.
#include <windows.h>

#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <cstring>
#include <functional>
#include <thread>

#include "desktop/clipboard_picture.h"
#include "desktop/gdi_windows.h"
#include "plugin/world.h"
#include "support/handle_probe_windows.h"
#include "support/soak.h"
#include "system/clipboard.h"
#include "system/desktop.h"
#include "system/fake_code_page.h"
#include "system/files.h"
#include "system/log.h"
#include "system/registry.h"
#include "system/shared_path.h"
#include "system/wide_text_windows.h"
#include "text/gbk_literal.h"
#include "text/text_converter.h"

namespace vernoxa::desktop {
namespace {

// Red, from a quarter to three quarters of the frame's width and height; millimetres are the frame's.
void putDrawingOnClipboard(int millimetresAcross, int millimetresDown) {
  const RECT frame{0, 0, millimetresAcross * 100, millimetresDown * 100};
  const HDC context = CreateEnhMetaFileA(nullptr, nullptr, &frame, nullptr);
  const int across = GetDeviceCaps(context, HORZRES) * millimetresAcross / GetDeviceCaps(context, HORZSIZE);
  const int down = GetDeviceCaps(context, VERTRES) * millimetresDown / GetDeviceCaps(context, VERTSIZE);
  const Brush red(CreateSolidBrush(RGB(255, 0, 0)));
  const RECT middle{across / 4, down / 4, across * 3 / 4, down * 3 / 4};
  FillRect(context, &middle, red.get());
  const HENHMETAFILE drawing = CloseEnhMetaFile(context);
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  SetClipboardData(CF_ENHMETAFILE, drawing);
  CloseClipboard();
}

// What lies there as that type: the first of them, or all up to one that is zero.
template <class Item>
std::basic_string<Item> onClipboard(UINT format, bool all = true) {
  const ClipboardLock lock(OpenClipboard(nullptr) != 0);
  const HANDLE memory = lock ? GetClipboardData(format) : nullptr;
  const Item* const items = memory != nullptr ? static_cast<const Item*>(GlobalLock(memory)) : nullptr;
  std::basic_string<Item> copy;
  for (std::size_t index = 0; items != nullptr && (all ? items[index] != 0 : index == 0); ++index) {
    copy.push_back(items[index]);
  }
  if (memory != nullptr) {
    GlobalUnlock(memory);
  }
  return copy;
}

class RealDesktop : public testing::Test {
 protected:
  RealDesktop() : logs(plugin::crashLogsOf(world, pathOf(folder + "\\bin"))), text(world.codePage, world.messages) {
    CreateDirectoryA(folder.c_str(), nullptr);
  }
  ~RealDesktop() override {
    for (const char* below : {"\\Cache\\Output\\Preview.bmp"}) {
      DeleteFileA((folder + below).c_str());
    }
    for (const char* below : {"\\Cache\\Output", "\\Cache", ""}) {
      RemoveDirectoryA((folder + below).c_str());
    }
  }
  static std::string temporaryFolder() {
    char path[MAX_PATH] = "";
    GetTempPathA(MAX_PATH, path);
    return std::string(path) + u8"vernoxa 桌面 "_gbk + std::to_string(GetCurrentProcessId());
  }

  plugin::World world = plugin::realWorld();
  std::string folder = temporaryFolder();
  Logs logs;
  TextConverter text;
  ProjectFolder project{pathOf(folder)};
  ClipboardPicture picture{world.clipboard, world.clock, world.pictures, world.files,
                           world.processes, project,     text,           logs};
};

std::uint32_t number(const std::string& bytes, std::size_t offset) {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

TEST_F(RealDesktop, TheCopiedDrawingBecomesAPreviewOnAWhiteGround) {
  putDrawingOnClipboard(80, 40);
  const FilePath path = picture.save();
  ASSERT_EQ(path, pathOf(folder + "\\Cache\\Output\\Preview.bmp"));
  EXPECT_FALSE(world.files.exists(pathOf("C:/Temp/test.emf")));

  const std::string file = world.files.read(path).value_or("");
  const ScreenMeasures screen = world.pictures.screen();
  const auto width = static_cast<std::uint32_t>(80 * screen.pixelsAcross / screen.millimetresAcross);
  const auto height = static_cast<std::uint32_t>(40 * screen.pixelsDown / screen.millimetresDown);
  ASSERT_EQ(file.substr(0, 2), "BM");
  EXPECT_EQ(number(file, 2), file.size());
  ASSERT_EQ(number(file, 10), 54U);  // the tests' screens have more than 256 colours
  EXPECT_EQ(number(file, 14), 40U);
  EXPECT_NEAR(number(file, 18), width, 1);  // the frame's edges come back from the system rounded
  EXPECT_NEAR(number(file, 22), height, 1);
  ASSERT_EQ(number(file, 26), 1U | 32U << 16U);

  // The system's own reader sees the same picture.
  const Bitmap bitmap(
      static_cast<HBITMAP>(LoadImageA(nullptr, literalOf(path).c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE)));
  ASSERT_TRUE(bitmap);
  const MemoryContext context(CreateCompatibleDC(nullptr));
  const Selection selected(context.get(), bitmap.get());
  const auto pixel = [&](unsigned column, unsigned row) {
    return GetPixel(context.get(), static_cast<int>(column), static_cast<int>(row));
  };
  EXPECT_EQ(pixel(0, 0), RGB(255, 255, 255));
  EXPECT_EQ(pixel(width - 2, height - 2), RGB(255, 255, 255));
  EXPECT_EQ(pixel(width / 8, height / 2), RGB(255, 255, 255));
  EXPECT_EQ(pixel(width / 2, height / 2), RGB(255, 0, 0));
  EXPECT_EQ(pixel(width / 3, height * 2 / 3), RGB(255, 0, 0));
}

void putOlderOnClipboard(const std::string& bytes) {
  const METAFILEPICT picture{
      MM_ANISOTROPIC, 3000, 3000,
      SetMetaFileBitsEx(static_cast<UINT>(bytes.size()), reinterpret_cast<const BYTE*>(bytes.data()))};
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof picture);
  std::memcpy(GlobalLock(memory), &picture, sizeof picture);
  GlobalUnlock(memory);
  SetClipboardData(CF_METAFILEPICT, memory);
  CloseClipboard();
}

TEST_F(RealDesktop, AnOlderMetafileIsLookedThroughBeforeTheSystemPlaysIt) {
  const HDC context = CreateMetaFileW(nullptr);
  const std::array<POINT, 3> points = {POINT{0, 0}, {90, 5}, {40, 100}};
  Polygon(context, points.data(), 3);
  const HMETAFILE drawing = CloseMetaFile(context);
  std::string bytes(GetMetaFileBitsEx(drawing, 0, nullptr), '\0');
  GetMetaFileBitsEx(drawing, static_cast<UINT>(bytes.size()), bytes.data());
  DeleteMetaFile(drawing);
  putOlderOnClipboard(bytes);
  EXPECT_FALSE(picture.save().empty());
  bytes.at(bytes.find("\x24\x03\x03") + 3) = '\x7F';  // many more points
  putOlderOnClipboard(bytes);
  EXPECT_TRUE(picture.save().empty());
  putDrawingOnClipboard(80, 40);
  EXPECT_FALSE(picture.save().empty());
}

TEST_F(RealDesktop, AClipboardWithoutADrawingAndAFileThatIsNoneGiveNothing) {
  world.clipboard.open()->replaceByText("text only");
  EXPECT_TRUE(picture.save().empty());
  EXPECT_FALSE(world.files.exists(pathOf(folder + "\\Cache")));
  const FilePath broken = pathOf(folder + "\\broken.emf");
  for (const std::string& bytes : {std::string(), std::string("no metafile"), std::string(108, '\1')}) {
    world.files.create(broken)->write(bytes);
    EXPECT_FALSE(picture.convert(broken, pathOf(folder + "\\x.bmp")));
  }
  EXPECT_FALSE(world.files.exists(pathOf(folder + "\\x.bmp")));
  world.files.removeFile(broken);
  EXPECT_FALSE(picture.convert(broken, pathOf(folder + "\\x.bmp")));
}

TEST_F(RealDesktop, TextGoesToTheClipboardInTheCodePage) {
  for (const std::string written : {u8"电阻 R1"_gbk, "", "two\r\nlines"}) {
    world.clipboard.open()->replaceByText(written);
    EXPECT_EQ(onClipboard<char>(CF_TEXT), written);
    EXPECT_EQ(onClipboard<char32_t>(CF_LOCALE, false), std::u32string(1, GetSystemDefaultLCID()));
    EXPECT_EQ(onClipboard<wchar_t>(CF_UNICODETEXT), toWide(written, CP_ACP));
  }
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
  EXPECT_EQ(world.desktop.cursor().x, 321);
  EXPECT_EQ(world.desktop.cursor().y, 123);
}

TEST_F(RealDesktop, AnExceptionOfABackgroundActionEndsThere) {
  const HANDLE done = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  world.desktop.runInBackground([] { throw std::bad_alloc(); });
  world.desktop.runInBackground([done] { SetEvent(done); });
  EXPECT_EQ(WaitForSingleObject(done, 5000), WAIT_OBJECT_0);
  CloseHandle(done);
}

TEST_F(RealDesktop, HoldsNoMoreHandlesAfterManyCalls) {
  putDrawingOnClipboard(20, 10);
  const struct {
    const char* name;
    std::function<void()> call;
  } cases[] = {
      {"picture", [this] { ASSERT_FALSE(picture.save().empty()); }},
      {"cursor", [this] { world.desktop.cursor(); }},
      {"key", [this] { world.desktop.moveKey(Key::escape, KeyMove::release); }},
      {"background",
       [this] {
         const HANDLE done = CreateEventA(nullptr, FALSE, FALSE, nullptr);
         world.desktop.runInBackground([done] { SetEvent(done); });
         WaitForSingleObject(done, INFINITE);
         CloseHandle(done);
       }},
      {"registry",
       [this] {
         world.registry.subKeys({RegistryRoot::currentUser, "Software"});
         world.registry.text({RegistryRoot::currentUser, "Software\\Wine"}, "Version");
       }},
      {"text", [this] { world.clipboard.open()->replaceByText("text"); }},
  };
  const int calls = soakCalls(300);
  for (const auto& each : cases) {
    each.call();
    const HandleProbe before = HandleProbe::take();
    const ULONGLONG start = GetTickCount64();
    for (int call = 0; call < calls; ++call) {
      each.call();
    }
    RecordProperty(each.name, std::to_string(GetTickCount64() - start) + " ms");
    EXPECT_FALSE(holdsMore(HandleProbe::take(), before, static_cast<std::uintptr_t>(calls))) << each.name;
  }
}

}  // namespace
}  // namespace vernoxa::desktop
