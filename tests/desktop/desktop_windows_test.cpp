// The clipboard, pictures, keys and mouse of the system that the tests run on.
#include <windows.h>

#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <cstring>
#include <functional>
#include <random>
#include <thread>
#include <vector>

#include "desktop/clipboard_picture.h"
#include "desktop/gdi_windows.h"
#include "desktop/metafile_check.h"
#include "plugin/world.h"
#include "support/handle_probe_windows.h"
#include "support/sample_metafiles.h"
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

// A picture of four by four points, of which the system makes bitmaps and brushes.
struct SmallBitmap {
  BITMAPINFOHEADER header{sizeof header, 4, 4, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  std::array<DWORD, 16> points{};
  const BITMAPINFO* information() const { return reinterpret_cast<const BITMAPINFO*>(&header); }
};

void drawBitmaps(HDC context) {
  SmallBitmap small;
  small.points.fill(0xFF00FF);
  StretchDIBits(context, 10, 10, 40, 40, 0, 0, 4, 4, small.points.data(), small.information(), DIB_RGB_COLORS, SRCCOPY);
  SetDIBitsToDevice(context, 60, 10, 4, 4, 0, 0, 1, 2, small.points.data(), small.information(), DIB_RGB_COLORS);
  const MemoryContext memory(CreateCompatibleDC(context));
  const Bitmap bitmap(
      CreateDIBitmap(context, &small.header, CBM_INIT, small.points.data(), small.information(), DIB_RGB_COLORS));
  const Bitmap mask(CreateBitmap(4, 4, 1, 1, nullptr));
  const Selection selected(memory.get(), bitmap.get());
  BitBlt(context, 10, 60, 4, 4, memory.get(), 0, 0, SRCCOPY);
  StretchBlt(context, 20, 60, 20, 20, memory.get(), 0, 0, 4, 4, SRCCOPY);
  MaskBlt(context, 50, 60, 4, 4, memory.get(), 0, 0, mask.get(), 0, 0, MAKEROP4(SRCCOPY, SRCINVERT));
  const std::array<POINT, 3> corners = {POINT{60, 60}, POINT{90, 70}, POINT{50, 90}};
  PlgBlt(context, corners.data(), memory.get(), 0, 0, 4, 4, nullptr, 0, 0);
  GdiAlphaBlend(context, 70, 60, 20, 20, memory.get(), 0, 0, 4, 4, {AC_SRC_OVER, 0, 128, 0});
  PatBlt(context, 0, 0, 5, 5, BLACKNESS);
  const Brush pattern(CreatePatternBrush(mask.get()));
  const Selection brush(context, pattern.get());
  Rectangle(context, 5, 5, 95, 20);
}

void drawShapes(HDC context) {
  // No extended pen: Wine 8 records none, and Wine 10 records one as it lies in a 64-bit program's memory, with the
  // style 4 and the count 8 bytes from where [MS-EMF] 2.3.7.9 has them. Such a record is refused.
  const HPEN pen = CreatePen(PS_SOLID, 3, RGB(0, 0, 255));
  const std::array<POINT, 6> points = {POINT{0, 0}, {90, 5}, {40, 100000}, {5, 90}, {50, 50}, {90, 90}};
  const std::array<INT, 2> counts = {3, 3};
  {
    const Selection selected(context, pen);
    Polyline(context, points.data(), 6);
    PolyPolygon(context, points.data(), counts.data(), 2);
    PolyBezier(context, points.data(), 4);
    Ellipse(context, 10, 10, 90, 90);
    AngleArc(context, 50, 50, 20, 0, 90);
  }
  DeleteObject(pen);
  BeginPath(context);
  Rectangle(context, 10, 10, 90, 90);
  EndPath(context);
  StrokeAndFillPath(context);
  const HRGN region = CreateEllipticRgn(10, 10, 90, 90);
  const Brush red(CreateSolidBrush(RGB(255, 0, 0)));
  FillRgn(context, region, red.get());
  FrameRgn(context, region, red.get(), 2, 2);
  ExtSelectClipRgn(context, region, RGN_COPY);
  ExtSelectClipRgn(context, nullptr, RGN_COPY);
  DeleteObject(region);
  std::array<TRIVERTEX, 2> corners = {TRIVERTEX{10, 10, 0xFF00, 0, 0, 0}, TRIVERTEX{90, 30, 0, 0xFF00, 0, 0}};
  GRADIENT_RECT rectangle{0, 1};
  GdiGradientFill(context, corners.data(), 2, &rectangle, 1, GRADIENT_FILL_RECT_H);
}

void drawTexts(HDC context) {
  SaveDC(context);
  const Font font(CreateFontW(-20, 0, 100, 100, FW_BOLD, TRUE, TRUE, FALSE, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma"));
  {
    const Selection selected(context, font.get());
    SetTextColor(context, RGB(0, 128, 0));
    TextOutW(context, 10, 10, L"wide", 4);
    TextOutA(context, 10, 30, "narrow", 6);
    const RECT opaque{0, 50, 90, 90};
    ExtTextOutW(context, 0, 0, ETO_OPAQUE, &opaque, nullptr, 0, nullptr);
    const POLYTEXTW text{10, 70, 4, L"many", 0, {}, nullptr};
    PolyTextOutW(context, &text, 1);
  }
  SetMapMode(context, MM_ANISOTROPIC);
  SetWindowExtEx(context, 200, 200, nullptr);
  SetViewportExtEx(context, 100, 100, nullptr);
  RestoreDC(context, -1);
  const std::string comment = "EMF of nobody";
  GdiComment(context, static_cast<UINT>(comment.size()), reinterpret_cast<const BYTE*>(comment.data()));
  SelectPalette(context, static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE)), TRUE);
}

std::string recorded(const std::function<void(HDC)>& draw, LONG height = 3000) {
  const RECT frame{0, 0, 3000, height};
  const HDC context = CreateEnhMetaFileW(nullptr, nullptr, &frame, L"Tests\0Drawing\0");
  draw(context);
  const MetafileHandle drawing(CloseEnhMetaFile(context));
  std::string bytes(GetEnhMetaFileBits(drawing.get(), 0, nullptr), '\0');
  GetEnhMetaFileBits(drawing.get(), static_cast<UINT>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data()));
  return bytes;
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

TEST_F(RealDesktop, WhatTheSystemRecordsIsTaken) {
  for (const auto draw : {drawBitmaps, drawShapes, drawTexts}) {
    const std::string bytes = recorded(draw);
    EXPECT_EQ(metafileFault(bytes).value_or("sound"), "sound");
    const FilePath path = pathOf(folder + "\\recorded.emf");
    const FilePath bitmap = pathOf(folder + "\\recorded.bmp");
    world.files.create(path)->write(bytes);
    EXPECT_TRUE(picture.convert(path, bitmap));
    EXPECT_TRUE(world.files.removeFile(bitmap));
    world.files.removeFile(path);
  }
}

// The whole picture a thousand times, in a hundred kilobytes.
TEST_F(RealDesktop, ADrawingThatTakesTooLongIsGivenUp) {
  const auto metafile = world.pictures.openMetafile(recorded([](HDC context) {
    for (int count = 0; count < 1000; ++count) {
      PatBlt(context, 0, 0, 10000, 10000, BLACKNESS);
    }
  }));
  EXPECT_TRUE(metafile->draw({10, 10}, std::chrono::seconds(60)));
  const ULONGLONG start = GetTickCount64();
  EXPECT_FALSE(metafile->draw({4000, 4000}, std::chrono::milliseconds(100)));
  EXPECT_LT(GetTickCount64() - start, 2000U);
}

// Minutes in one record, where nobody looks at the time.
TEST_F(RealDesktop, AShapeOfTooManyCrossingsIsNotDrawn) {
  std::vector<POINT> points(20000);
  std::mt19937 dice(1);
  for (POINT& point : points) {
    point = {static_cast<LONG>(dice() % 1000), static_cast<LONG>(dice() % 1000)};
  }
  const auto polygon = [&](HDC context) { Polygon(context, points.data(), static_cast<int>(points.size())); };
  const auto path = [&](HDC context) {
    BeginPath(context);
    for (const POINT& point : points) {
      LineTo(context, point.x, point.y);
    }
    EndPath(context);
    Ellipse(context, 0, 0, 1, 1);
  };
  // The system takes minutes to record a filled path, too: it has the place of the ellipse.
  const std::string ellipse = recorded(path);
  const std::string filledPath = withNumber(ellipse, findRecord(ellipse, EMR_ELLIPSE), EMR_FILLPATH);
  for (const std::string& bytes : {recorded(polygon), filledPath}) {
    EXPECT_EQ(metafileFault(bytes).value_or("sound"), "sound");
    EXPECT_FALSE(world.pictures.openMetafile(bytes)->draw({1000, 1000}, std::chrono::seconds(60)));
  }
  // A row for each step of a recursion.
  const auto flood = [](HDC context) { ExtFloodFill(context, 1, 1, RGB(255, 255, 255), FLOODFILLSURFACE); };
  EXPECT_TRUE(world.pictures.openMetafile(recorded(flood, 800000))->draw({100, 30000}, std::chrono::seconds(60)));
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
