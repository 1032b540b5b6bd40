#include <climits>
#include <functional>

#include "platform/graphics/surface.h"
#include "tests/graphics/canvas.h"

namespace {

// Every function that takes a device context must take a bad one.
TEST(DeviceContexts, DeadHandlesFailSoftly) {
  const HDC dead = CreateCompatibleDC(nullptr);
  EXPECT_TRUE(DeleteDC(dead));
  Canvas living(2, 2, kRed);
  for (const HDC dc : {HDC{}, dead, reinterpret_cast<HDC>(std::uintptr_t{0x7fffffff})}) {
    POINT point = {1, 1};
    RECT rect = {0, 0, 2, 2};
    SIZE size = {};
    TEXTMETRICA metrics = {};
    BITMAPINFO info = {};
    platform::SurfaceView view;
    EXPECT_FALSE(DeleteDC(dc));
    EXPECT_EQ(SelectObject(dc, GetStockObject(WHITE_BRUSH)), nullptr);
    EXPECT_EQ(SelectPalette(dc, static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE)), FALSE), nullptr);
    EXPECT_EQ(RealizePalette(dc), 0U);
    EXPECT_EQ(GetDeviceCaps(dc, LOGPIXELSX), 0);
    EXPECT_EQ(SaveDC(dc), 0);
    EXPECT_FALSE(RestoreDC(dc, -1));
    EXPECT_FALSE(DPtoLP(dc, &point, 1));
    EXPECT_EQ(SetTextColor(dc, 0), CLR_INVALID);
    EXPECT_EQ(SetBkMode(dc, OPAQUE), 0);
    EXPECT_EQ(IntersectClipRect(dc, 0, 0, 1, 1), RGN_ERROR);
    EXPECT_EQ(GetClipBox(dc, &rect), RGN_ERROR);
    EXPECT_FALSE(PatBlt(dc, 0, 0, 1, 1, PATCOPY));
    EXPECT_FALSE(FillRect(dc, &rect, GetSysColorBrush(COLOR_BTNFACE)));
    EXPECT_EQ(SetPixel(dc, 0, 0, 0), CLR_INVALID);
    EXPECT_EQ(GetPixel(dc, 0, 0), CLR_INVALID);
    EXPECT_FALSE(LineTo(dc, 1, 1));
    EXPECT_FALSE(Rectangle(dc, 0, 0, 1, 1));
    EXPECT_FALSE(BitBlt(dc, 0, 0, 1, 1, living, 0, 0, SRCCOPY));
    EXPECT_FALSE(BitBlt(living, 0, 0, 1, 1, dc, 0, 0, SRCCOPY));
    EXPECT_EQ(StretchDIBits(dc, 0, 0, 1, 1, 0, 0, 1, 1, &info, &info, DIB_RGB_COLORS, SRCCOPY), 0);
    EXPECT_FALSE(TextOut(dc, 0, 0, "x", 1));
    EXPECT_EQ(DrawText(dc, "x", 1, &rect, 0), 0);
    EXPECT_FALSE(GetTextExtentPoint32(dc, "x", 1, &size));
    EXPECT_FALSE(GetTextMetrics(dc, &metrics));
    EXPECT_EQ(CreateCompatibleBitmap(dc, 1, 1), nullptr);
    EXPECT_FALSE(platform::LockSurface(dc, view));
    platform::UnlockSurface(dc, rect);
  }
  EXPECT_EQ(CreateCompatibleDC(dead), nullptr);
  EXPECT_TRUE(living.Is([](int, int) { return kRed; }));
}

TEST(DeviceContexts, NewMemoryOnesAreBilevel) {
  const HDC dc = CreateCompatibleDC(nullptr);
  const HBITMAP bilevel = CreateCompatibleBitmap(dc, 3, 3);
  BITMAP described = {};
  GetObject(bilevel, sizeof described, &described);
  EXPECT_EQ(described.bmBitsPixel, 1);
  Canvas canvas(1, 1);
  const HBITMAP coloured = CreateCompatibleBitmap(canvas, 3, 3);
  GetObject(coloured, sizeof described, &described);
  EXPECT_EQ(described.bmBitsPixel, 32);
  EXPECT_EQ(described.bmBits, nullptr);
  DeleteDC(dc);
  EXPECT_TRUE(DeleteObject(bilevel) && DeleteObject(coloured));
}

TEST(DeviceContexts, ABitmapIsInOneAtATime) {
  const HBITMAP bitmap = CreateBitmap(2, 2, 1, 32, nullptr);
  const HDC first = CreateCompatibleDC(nullptr);
  const HDC second = CreateCompatibleDC(nullptr);
  const HGDIOBJ stock = SelectObject(first, bitmap);
  EXPECT_NE(stock, nullptr);
  EXPECT_EQ(SelectObject(second, bitmap), nullptr);
  EXPECT_FALSE(DeleteObject(bitmap));
  EXPECT_EQ(SelectObject(first, stock), bitmap);
  EXPECT_NE(SelectObject(second, bitmap), nullptr);
  EXPECT_TRUE(DeleteDC(second));  // lets it go
  EXPECT_TRUE(DeleteObject(bitmap));
  DeleteDC(first);
}

TEST(DeviceContexts, RestoreBringsBackWhatSaveKept) {
  Canvas canvas(4, 4);
  const HBRUSH kept = CreateSolidBrush(kRed);
  const HBRUSH gone = CreateSolidBrush(kBlue);
  SelectObject(canvas, gone);
  EXPECT_EQ(SaveDC(canvas), 1);
  SelectObject(canvas, kept);
  SetTextColor(canvas, kGreen);
  SetWindowOrgEx(canvas, 5, 5, nullptr);
  IntersectClipRect(canvas, 5, 5, 6, 6);
  EXPECT_EQ(SaveDC(canvas), 2);
  SelectObject(canvas, GetStockObject(BLACK_BRUSH));
  EXPECT_TRUE(RestoreDC(canvas, -1));
  EXPECT_EQ(GetCurrentObject(canvas, OBJ_BRUSH), kept);
  EXPECT_EQ(GetTextColor(canvas), kGreen);
  EXPECT_TRUE(DeleteObject(gone));  // selected only in the saved state
  EXPECT_TRUE(RestoreDC(canvas, 1));
  EXPECT_EQ(GetCurrentObject(canvas, OBJ_BRUSH), kept);  // the other can't come back
  EXPECT_EQ(GetTextColor(canvas), kBlack);
  RECT box;
  EXPECT_EQ(GetClipBox(canvas, &box), SIMPLEREGION);
  EXPECT_TRUE(box == CRect(0, 0, 4, 4));
  EXPECT_FALSE(RestoreDC(canvas, 1));
  EXPECT_FALSE(DeleteObject(kept));
  SelectObject(canvas, GetStockObject(WHITE_BRUSH));
  EXPECT_TRUE(DeleteObject(kept));
}

TEST(DeviceContexts, ScreenCaps) {
  const HDC dc = CreateCompatibleDC(nullptr);
  EXPECT_EQ(GetDeviceCaps(dc, LOGPIXELSX), 96);
  EXPECT_EQ(GetDeviceCaps(dc, LOGPIXELSY), 96);
  EXPECT_EQ(GetDeviceCaps(dc, BITSPIXEL), 32);
  EXPECT_EQ(GetDeviceCaps(dc, TECHNOLOGY), DT_RASDISPLAY);
  EXPECT_EQ(GetDeviceCaps(dc, RASTERCAPS) & RC_PALETTE, 0);
  EXPECT_GT(GetDeviceCaps(dc, HORZRES), 0);
  DeleteDC(dc);
}

}  // namespace
