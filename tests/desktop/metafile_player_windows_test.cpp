// Metafiles that the system itself records, and how the plug-in has them drawn.
#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <random>

#include "desktop/desktop_windows.h"
#include "desktop/gdi_windows.h"
#include "desktop/metafile_check.h"
#include "support/sample_metafiles.h"

namespace vernoxa::desktop {
namespace {

using std::chrono::seconds;

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
  const Brush pattern(CreatePatternBrush(mask.get()));
  const Selection brush(context, pattern.get());
  Rectangle(context, 5, 5, 95, 20);
}

void drawShapes(HDC context) {
  // No extended pen: Wine 8 records none, and Wine 10 records one as it lies in a 64-bit program's memory, with the
  // style 4 and the count 8 bytes from where [MS-EMF] 2.3.7.9 has them. Such a record is refused.
  const std::array<POINT, 6> points = {POINT{0, 0}, {90, 5}, {40, 100000}, {5, 90}, {50, 50}, {90, 90}};
  const std::array<INT, 2> counts = {3, 3};
  Polyline(context, points.data(), 6);
  PolyPolygon(context, points.data(), counts.data(), 2);
  PolyBezier(context, points.data(), 4);
  BeginPath(context);
  Ellipse(context, 10, 10, 90, 90);
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
    TextOutW(context, 10, 10, L"wide", 4);
    TextOutA(context, 10, 30, "narrow", 6);
    const RECT opaque{0, 50, 90, 90};
    ExtTextOutW(context, 0, 0, ETO_OPAQUE, &opaque, nullptr, 0, nullptr);
    const POLYTEXTW text{10, 70, 4, L"many", 0, {}, nullptr};
    PolyTextOutW(context, &text, 1);
  }
  RestoreDC(context, -1);
  GdiComment(context, 13, reinterpret_cast<const BYTE*>("EMF of nobody"));
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

TEST(SystemsPlayer, WhatTheSystemRecordsIsTaken) {
  for (const auto draw : {drawBitmaps, drawShapes, drawTexts}) {
    const std::string bytes = recorded(draw);
    EXPECT_EQ(metafileFault(bytes).value_or("sound"), "sound");
    EXPECT_TRUE(windowsPictures()->openMetafile(bytes)->draw({113, 113}, seconds(60)));
  }
}

// The whole picture five thousand times, in half a megabyte.
TEST(SystemsPlayer, ADrawingThatTakesTooLongIsGivenUp) {
  const auto metafile = windowsPictures()->openMetafile(recorded([](HDC context) {
    for (int count = 0; count < 5000; ++count) {
      PatBlt(context, 0, 0, 10000, 10000, BLACKNESS);
    }
  }));
  EXPECT_TRUE(metafile->draw({10, 10}, seconds(60)));
  const ULONGLONG start = GetTickCount64();
  EXPECT_FALSE(metafile->draw({4000, 4000}, std::chrono::milliseconds(100)));
  EXPECT_LT(GetTickCount64() - start, 10000U);
}

// Minutes in one record, where nobody looks at the time.
TEST(SystemsPlayer, AShapeOfTooManyCrossingsIsNotDrawn) {
  std::vector<POINT> points(20000);
  std::mt19937 dice(1);
  for (POINT& point : points) {
    point = {static_cast<LONG>(dice() % 1000), static_cast<LONG>(dice() % 1000)};
  }
  const auto polygon = [&](HDC context) { Polygon(context, points.data(), static_cast<int>(points.size())); };
  const auto path = [&](HDC context) {
    BeginPath(context);
    PolylineTo(context, points.data(), static_cast<DWORD>(points.size()));
    EndPath(context);
    Ellipse(context, 0, 0, 1, 1);
  };
  // The system takes minutes to record a filled path, too: it has the place of the ellipse.
  const std::string ellipse = recorded(path);
  const std::string filledPath = withNumber(ellipse, findRecord(ellipse, EMR_ELLIPSE), EMR_FILLPATH);
  for (const std::string& bytes : {recorded(polygon), filledPath}) {
    EXPECT_EQ(metafileFault(bytes).value_or("sound"), "sound");
    EXPECT_FALSE(windowsPictures()->openMetafile(bytes)->draw({1000, 1000}, seconds(60)));
  }
  // A row for each step of a recursion.
  const auto flood = [](HDC context) { ExtFloodFill(context, 1, 1, RGB(255, 255, 255), FLOODFILLSURFACE); };
  EXPECT_TRUE(windowsPictures()->openMetafile(recorded(flood, 800000))->draw({100, 30000}, seconds(60)));
}

}  // namespace
}  // namespace vernoxa::desktop
