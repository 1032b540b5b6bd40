#include <climits>

#include "tests/graphics/canvas.h"

namespace {

TEST(Fills, PatBltOperations) {
  constexpr COLORREF kBefore = RGB(0x12, 0x34, 0x56);
  constexpr COLORREF kBrush = RGB(0xf0, 0x0f, 0xaa);
  struct Row {
    DWORD operation;
    COLORREF result;
  };
  const Row rows[] = {{PATCOPY, kBrush},
                      {PATINVERT, kBrush ^ kBefore},
                      {DSTINVERT, ~kBefore & 0xffffff},
                      {BLACKNESS, kBlack},
                      {WHITENESS, kWhite}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.operation);
    Canvas canvas(5, 4, kBefore);
    const Selected brush(canvas, CreateSolidBrush(kBrush));
    EXPECT_TRUE(PatBlt(canvas, 1, 1, 3, 2, row.operation));
    EXPECT_TRUE(canvas.Is(
        [&](int x, int y) { return CRect(1, 1, 4, 3).PtInRect(CPoint(x, y)) ? row.result : kBefore; }));
  }
  Canvas canvas(1, 1);
  EXPECT_FALSE(PatBlt(canvas, 0, 0, 1, 1, SRCCOPY));  // there is no source
}

TEST(Fills, NegativeAndHugeExtents) {
  Canvas canvas(6, 6, kWhite);
  EXPECT_TRUE(PatBlt(canvas, 4, 4, -2, -3, BLACKNESS));
  EXPECT_TRUE(
      canvas.Is([](int x, int y) { return CRect(2, 1, 4, 4).PtInRect(CPoint(x, y)) ? kBlack : kWhite; }));
  EXPECT_TRUE(PatBlt(canvas, INT_MIN, INT_MIN, INT_MAX, INT_MAX, BLACKNESS));
  EXPECT_TRUE(PatBlt(canvas, -5, -5, INT_MAX, INT_MAX, BLACKNESS));
  EXPECT_TRUE(canvas.Is([](int, int) { return kBlack; }));
}

TEST(Fills, HollowBrushDrawsNothing) {
  Canvas canvas(2, 2, kRed);
  SelectObject(canvas, GetStockObject(NULL_BRUSH));
  EXPECT_TRUE(PatBlt(canvas, 0, 0, 2, 2, PATCOPY));
  EXPECT_TRUE(canvas.Is([](int, int) { return kRed; }));
}

TEST(Fills, FillRectTakesThemeColourNumbers) {
  const CRect all(0, 0, 2, 2);
  for (int index = 0; index <= COLOR_INFOBK; ++index) {
    Canvas canvas(2, 2, kRed);
    EXPECT_TRUE(FillRect(canvas, &all, reinterpret_cast<HBRUSH>(static_cast<std::uintptr_t>(index + 1))));
    EXPECT_EQ(canvas.Color(1, 1), GetSysColor(index)) << index;
    EXPECT_TRUE(FillRect(canvas, &all, GetSysColorBrush(index)));
    EXPECT_EQ(canvas.Color(0, 1), GetSysColor(index)) << index;
  }
}

TEST(Fills, OriginsMoveDrawing) {
  Canvas canvas(6, 6, kWhite);
  SetWindowOrgEx(canvas, 10, 20, nullptr);
  SetViewportOrgEx(canvas, 2, 1, nullptr);
  EXPECT_TRUE(PatBlt(canvas, 11, 22, 1, 1, BLACKNESS));  // 11 - 10 + 2, 22 - 20 + 1
  EXPECT_EQ(GetPixel(canvas, 11, 22), kBlack);
  EXPECT_TRUE(canvas.Is([](int x, int y) { return x == 3 && y == 3 ? kBlack : kWhite; }));
  POINT points[] = {{3, 3}};
  EXPECT_TRUE(DPtoLP(canvas, points, 1));
  EXPECT_TRUE(points[0] == CPoint(11, 22));
  EXPECT_TRUE(LPtoDP(canvas, points, 1));
  EXPECT_TRUE(points[0] == CPoint(3, 3));
}

TEST(Fills, ClipIsRespected) {
  Canvas canvas(8, 8, kWhite);
  const int whole = SaveDC(canvas);
  EXPECT_EQ(IntersectClipRect(canvas, 1, 1, 7, 7), SIMPLEREGION);
  EXPECT_EQ(ExcludeClipRect(canvas, 3, 3, 5, 5), COMPLEXREGION);
  const auto inside = [](int x, int y) {
    return CRect(1, 1, 7, 7).PtInRect(CPoint(x, y)) && !CRect(3, 3, 5, 5).PtInRect(CPoint(x, y));
  };
  PatBlt(canvas, 0, 0, 8, 8, BLACKNESS);
  EXPECT_TRUE(canvas.Is([&](int x, int y) { return inside(x, y) ? kBlack : kWhite; }));
  EXPECT_EQ(SetPixel(canvas, 4, 4, kRed), CLR_INVALID);
  EXPECT_EQ(SetPixel(canvas, 2, 2, kRed), kRed);
  RECT box;
  EXPECT_EQ(GetClipBox(canvas, &box), COMPLEXREGION);
  EXPECT_TRUE(box == CRect(1, 1, 7, 7));
  EXPECT_TRUE(RestoreDC(canvas, whole));
  EXPECT_EQ(SetPixel(canvas, 4, 4, kRed), kRed);
  EXPECT_EQ(IntersectClipRect(canvas, 2, 2, 2, 9), NULLREGION);
  PatBlt(canvas, 0, 0, 8, 8, WHITENESS);
  EXPECT_EQ(canvas.Color(4, 4), kRed);
}

TEST(Lines, EndPointStaysUndrawn) {
  constexpr POINT kEnds[] = {{6, 4}, {2, 4}, {4, 6}, {4, 2}, {6, 6}, {2, 2}, {2, 6}, {6, 2}};
  for (const POINT& end : kEnds) {
    SCOPED_TRACE(testing::Message() << end.x << ", " << end.y);
    Canvas canvas(9, 9, kWhite);
    MoveToEx(canvas, 4, 4, nullptr);
    EXPECT_TRUE(LineTo(canvas, end.x, end.y));
    const LONG stepX = (end.x - 4) / 2;
    const LONG stepY = (end.y - 4) / 2;
    EXPECT_TRUE(canvas.Is([&](int x, int y) {
      const bool drawn = (x == 4 && y == 4) || (x == 4 + stepX && y == 4 + stepY);
      return drawn ? kBlack : kWhite;
    }));
  }
}

TEST(Lines, RectangleHasEdgeAndInside) {
  Canvas canvas(8, 8, kWhite);
  const Selected pen(canvas, CreatePen(PS_SOLID, 2, kBlue));
  const Selected brush(canvas, CreateSolidBrush(kGreen));
  EXPECT_TRUE(Rectangle(canvas, 1, 1, 7, 7));
  EXPECT_TRUE(canvas.Is([](int x, int y) {
    const CPoint at(x, y);
    return CRect(3, 3, 5, 5).PtInRect(at) ? kGreen : CRect(1, 1, 7, 7).PtInRect(at) ? kBlue : kWhite;
  }));
}

}  // namespace
