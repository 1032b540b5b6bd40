#include "platform/graphics/dc.h"
#include "tests/graphics/canvas.h"

namespace {

TEST(Wrappers, ObjectsEndWithTheirWrapper) {
  HGDIOBJ handle = nullptr;
  {
    const CBrush brush(kRed);
    handle = brush.GetSafeHandle();
    EXPECT_EQ(GetObjectType(handle), OBJ_BRUSH);
  }
  EXPECT_EQ(GetObjectType(handle), 0U);
  {
    CBrush brush(kRed);
    handle = brush.Detach();
  }
  EXPECT_EQ(GetObjectType(handle), OBJ_BRUSH);
  DeleteObject(handle);
}

TEST(Wrappers, FromHandleFindsTheOwnerOrMakesATemporary) {
  CPen pen(PS_SOLID, 1, kRed);
  EXPECT_EQ(CPen::FromHandle(pen), &pen);
  EXPECT_EQ(CBrush::FromHandle(static_cast<HBRUSH>(pen.GetSafeHandle())), nullptr);  // of another class
  const HBRUSH brush = CreateSolidBrush(kBlue);
  CBrush* temporary = CBrush::FromHandle(brush);
  ASSERT_NE(temporary, nullptr);
  EXPECT_TRUE(temporary->IsKindOf(RUNTIME_CLASS(CBrush)));
  EXPECT_EQ(CBrush::FromHandle(brush), temporary);
  CGdiObject::DeleteTempMap();
  EXPECT_EQ(GetObjectType(brush), OBJ_BRUSH);  // a temporary wrapper owns nothing
  DeleteObject(brush);
  EXPECT_EQ(CBrush::FromHandle(brush), nullptr);
}

// The way a paint handler fills its background.
TEST(Wrappers, SelectGivesTheFormerObjectBack) {
  Canvas canvas(4, 4, kRed);
  CDC dc;
  dc.Attach(canvas);
  CGdiObject* old = dc.SelectStockObject(GRAY_BRUSH);
  ASSERT_NE(old, nullptr);
  EXPECT_TRUE(dc.PatBlt(0, 0, 4, 4, PATCOPY));
  EXPECT_TRUE(canvas.Is([](int, int) { return RGB(128, 128, 128); }));
  dc.SelectObject(old);
  EXPECT_EQ(GetCurrentObject(canvas, OBJ_BRUSH), GetStockObject(WHITE_BRUSH));
  CBrush green(kGreen);
  CBrush* before = dc.SelectObject(&green);
  EXPECT_EQ(dc.SelectObject(before), &green);
  EXPECT_EQ(CDC::FromHandle(canvas), &dc);
  dc.Detach();
}

TEST(Wrappers, DeviceContextsEndWithTheirWrapper) {
  HDC handle = nullptr;
  {
    CDC dc;
    EXPECT_TRUE(dc.CreateCompatibleDC(nullptr));
    EXPECT_TRUE(dc.IsKindOf(RUNTIME_CLASS(CDC)));
    handle = dc.GetSafeHdc();
    EXPECT_EQ(dc.m_hAttribDC, handle);
    EXPECT_EQ(dc.GetDeviceCaps(LOGPIXELSX), 96);
    EXPECT_FALSE(dc.CreateCompatibleDC(nullptr));  // holds one already
  }
  EXPECT_FALSE(DeleteDC(handle));
  EXPECT_EQ(CDC::FromHandle(handle), nullptr);
  CDC empty;
  EXPECT_EQ(empty.SelectStockObject(GRAY_BRUSH), nullptr);
  EXPECT_FALSE(empty.PatBlt(0, 0, 1, 1, PATCOPY));
  EXPECT_FALSE(empty.DeleteDC());
}

TEST(Wrappers, RectanglesThroughDPtoLP) {
  CDC dc;
  dc.CreateCompatibleDC(nullptr);
  EXPECT_TRUE(dc.SetWindowOrg(3, 4) == CPoint(0, 0));
  CRect rect(0, 0, 10, 20);
  dc.DPtoLP(rect);
  EXPECT_TRUE(rect == CRect(3, 4, 13, 24));
  EXPECT_TRUE(dc.SetWindowOrg(CPoint(0, 0)) == CPoint(3, 4));
}

TEST(Wrappers, SolidRectsAndFrames) {
  Canvas canvas(6, 6, kWhite);
  CDC dc;
  dc.Attach(canvas);
  dc.FillSolidRect(CRect(1, 1, 5, 5), kGreen);
  dc.Draw3dRect(CRect(1, 1, 5, 5), kRed, kBlue);
  EXPECT_TRUE(canvas.Is([](int x, int y) {
    if (x < 1 || y < 1 || x > 4 || y > 4) return kWhite;
    if (x == 4 || y == 4) return kBlue;
    return x == 1 || y == 1 ? kRed : kGreen;
  }));
  dc.Detach();
}

}  // namespace
