#include "platform/graphics/surface.h"

#include <QtGui/QPainter>
#include <memory>

#include "platform/graphics/detail/device_context.h"
#include "tests/graphics/canvas.h"

namespace {

class WindowSurface : public testing::TestWithParam<double> {
 protected:
  WindowSurface()
      : m_image(qRound(20 * GetParam()), qRound(10 * GetParam()), QImage::Format_RGB32),
        m_dc(platform::CreateWindowSurfaceDC(&m_image, GetParam(), QRegion(0, 0, 20, 10),
                                             [this](const QRect& r) { m_drawn.push_back(r); })) {
    m_image.fill(Qt::white);
  }
  ~WindowSurface() override { platform::DestroySurfaceDC(m_dc); }
  int Edge(int units) const { return static_cast<int>(units * GetParam() + 0.5); }
  // The filled part in pixels, found by looking.
  CRect Dark() const {
    CRect box;
    for (int y = 0; y < m_image.height(); ++y)
      for (int x = 0; x < m_image.width(); ++x)
        if (qGray(m_image.pixel(x, y)) < 128) box |= CRect(x, y, x + 1, y + 1);
    return box;
  }

  QImage m_image;
  std::vector<QRect> m_drawn;
  HDC m_dc;
};
INSTANTIATE_TEST_SUITE_P(Scales, WindowSurface, testing::Values(1.0, 1.25, 1.5, 2.0));

TEST_P(WindowSurface, UnitsCoverTheirPixels) {
  SetWindowOrgEx(m_dc, -1, 0, nullptr);
  EXPECT_TRUE(PatBlt(m_dc, 2, 3, 5, 1, BLACKNESS));
  EXPECT_TRUE(Dark() == CRect(Edge(3), Edge(3), Edge(8), Edge(4)));
  ASSERT_EQ(m_drawn.size(), 1U);
  EXPECT_EQ(m_drawn[0], QRect(3, 3, 5, 1));
  EXPECT_EQ(GetPixel(m_dc, 2, 3), kBlack);
  EXPECT_EQ(GetPixel(m_dc, 1, 3), kWhite);
}

TEST_P(WindowSurface, CompatibleBitmapsKeepTheSharpness) {
  const HDC memory = CreateCompatibleDC(m_dc);
  const HBITMAP bitmap = CreateCompatibleBitmap(m_dc, 20, 10);
  BITMAP described = {};
  GetObject(bitmap, sizeof described, &described);
  EXPECT_EQ(described.bmWidth, 20);
  SelectObject(memory, bitmap);
  platform::SurfaceView view;
  ASSERT_TRUE(platform::LockSurface(memory, view));
  EXPECT_EQ(view.scale, GetParam());
  ASSERT_EQ(view.width, m_image.width());
  // One pixel, finer than a unit, comes over as it is.
  std::fill_n(view.pixels, view.stride * view.height, 0xffffffffU);
  view.pixels[3 * view.stride + 5] = 0xff000000U;
  EXPECT_TRUE(BitBlt(m_dc, 0, 0, 20, 10, memory, 0, 0, SRCCOPY));
  EXPECT_TRUE(Dark() == CRect(5, 3, 6, 4));
  DeleteDC(memory);
  DeleteObject(bitmap);
}

TEST_P(WindowSurface, LockTellsOriginAndClip) {
  SetViewportOrgEx(m_dc, 4, 2, nullptr);
  IntersectClipRect(m_dc, 0, 0, 6, 3);  // logical: from (4, 2) in units
  platform::SurfaceView view;
  ASSERT_TRUE(platform::LockSurface(m_dc, view));
  EXPECT_EQ(view.originX, 4 * GetParam());
  EXPECT_EQ(view.originY, 2 * GetParam());
  EXPECT_EQ(reinterpret_cast<const uchar*>(view.pixels), m_image.constBits());
  ASSERT_EQ(view.clip.size(), 1U);
  EXPECT_TRUE(view.clip[0] == CRect(Edge(4), Edge(2), Edge(10), Edge(5)));
  platform::UnlockSurface(m_dc, {1, 1, 100, 2});
  ASSERT_EQ(m_drawn.size(), 1U);
  EXPECT_EQ(m_drawn[0], QRect(5, 3, 5, 1));  // no further than the clip
}

TEST_P(WindowSurface, ClippedDrawingTellsNothing) {
  IntersectClipRect(m_dc, 0, 0, 2, 2);
  EXPECT_TRUE(PatBlt(m_dc, 5, 5, 3, 3, BLACKNESS));
  EXPECT_TRUE(m_drawn.empty());
  EXPECT_TRUE(Dark().IsRectEmpty());
}

TEST_P(WindowSurface, OutlivesItsImage) {
  EXPECT_FALSE(DeleteDC(m_dc));  // it belongs to the window
  EXPECT_TRUE(platform::SetWindowSurface(m_dc, nullptr, 1, {}));
  EXPECT_FALSE(PatBlt(m_dc, 0, 0, 1, 1, BLACKNESS));
  platform::SurfaceView view;
  EXPECT_FALSE(platform::LockSurface(m_dc, view));
  const HBITMAP bitmap = CreateCompatibleBitmap(m_dc, 2, 2);
  EXPECT_NE(bitmap, nullptr);
  DeleteObject(bitmap);
}

TEST(Surfaces, BilevelOnesCannotBeLocked) {
  const HDC dc = CreateCompatibleDC(nullptr);
  platform::SurfaceView view;
  EXPECT_FALSE(platform::LockSurface(dc, view));
  DeleteDC(dc);
}

TEST(Surfaces, BottomUpSectionsHaveANegativeStride) {
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof info.bmiHeader, 2, 2, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const HDC dc = CreateCompatibleDC(nullptr);
  SelectObject(dc, bitmap);
  SetPixel(dc, 1, 0, kRed);
  platform::SurfaceView view;
  ASSERT_TRUE(platform::LockSurface(dc, view));
  EXPECT_EQ(view.stride, -2);
  EXPECT_EQ(view.pixels[1] & 0xffffff, 0xff0000U);
  EXPECT_EQ(static_cast<std::uint32_t*>(bits)[3] & 0xffffff, 0xff0000U);
  DeleteDC(dc);
  DeleteObject(bitmap);
}

TEST(Painters, DrawAndAnswerCaps) {
  QImage page(40, 40, QImage::Format_RGB32);
  page.fill(Qt::white);
  QPainter painter(&page);
  bool ended = false;
  const HDC dc = platform::CreatePainterDC(&painter, {{HORZRES, 30}, {VERTRES, 30}, {LOGPIXELSX, 300}},
                                           [&] { ended = true; });
  EXPECT_EQ(GetDeviceCaps(dc, LOGPIXELSX), 300);
  EXPECT_EQ(GetDeviceCaps(dc, BITSPIXEL), 0);
  Canvas source(2, 2, kRed);
  EXPECT_TRUE(StretchBlt(dc, 20, 20, 20, 20, source, 0, 0, 2, 2, SRCCOPY));
  EXPECT_FALSE(StretchBlt(dc, 0, 0, 9, 9, source, 0, 0, 2, 2, SRCINVERT));
  EXPECT_TRUE(PatBlt(dc, 0, 0, 5, 5, BLACKNESS));
  EXPECT_EQ(page.pixelColor(29, 29), QColor(Qt::red));
  EXPECT_EQ(page.pixelColor(30, 30), QColor(Qt::white));  // beyond the printable part
  EXPECT_EQ(page.pixelColor(4, 4), QColor(Qt::black));
  EXPECT_TRUE(platform::SetPainter(dc, nullptr));
  EXPECT_FALSE(PatBlt(dc, 0, 0, 5, 5, WHITENESS));
  EXPECT_TRUE(DeleteDC(dc));
  EXPECT_TRUE(ended);
}

TEST(Images, BitmapsToAndFromImages) {
  QImage image(2, 1, QImage::Format_ARGB32);
  image.setPixel(0, 0, 0x00000000U);
  image.setPixel(1, 0, 0xff102030U);
  const HBITMAP bitmap = platform::BitmapFromImage(image, kGreen);
  const QImage back = platform::ImageOfBitmap(bitmap);
  EXPECT_EQ(back.pixel(0, 0), 0xff00ff00U);
  EXPECT_EQ(back.pixel(1, 0), 0xff102030U);
  EXPECT_TRUE(platform::ImageOfBitmap(nullptr).isNull());
  DeleteObject(bitmap);
}

}  // namespace
