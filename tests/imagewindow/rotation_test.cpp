// Turning the page in the window, and what that does to the pages that come.

#include "tests/imagewindow/window_fixture.h"

namespace {

class Rotation : public ImageWindowTest {};

TEST_F(Rotation, TurnsThePageAndThoseThatCome) {
  const std::string path = WriteFile({{100, 200}, {50, 80}});
  ASSERT_TRUE(window->OpenImageFile(path.c_str()) && window->LoadPage(1));
  EXPECT_TRUE(window->Rotate(90, true));
  EXPECT_EQ(window->m_szScaled, CSize(200, 100));
  EXPECT_EQ(window->m_nRotation, 90);
  ASSERT_TRUE(window->LoadPage(2));
  EXPECT_EQ(window->m_szScaled, CSize(80, 50));
  ASSERT_TRUE(window->LoadPage(2));
  EXPECT_EQ(window->m_szScaled, CSize(80, 50)) << "not on top of the old turn";
  const struct {
    int degrees;
    int sum;
  } rows[] = {{180, 270}, {180, 90}, {-90, 0}, {-90, -90}, {-90, -180}, {450, -90}};
  for (const auto& row : rows) {
    EXPECT_TRUE(window->Rotate(row.degrees, true));
    EXPECT_EQ(window->m_nRotation, row.sum);
  }
  ASSERT_TRUE(window->OpenImageFile(path.c_str()) && window->LoadPage(1));
  EXPECT_EQ(window->m_szScaled, CSize(100, 200)) << "a new source comes unturned";
}

TEST_F(Rotation, TurnsTheGreyCopyOnlyWhereItIsShown) {
  Page page{100, 200};
  page.bits = 1;
  Show({page});
  window->ZoomToScaleFactor(0.25);
  ASSERT_TRUE(window->HasCopy());
  EXPECT_TRUE(window->Rotate(-90, true));
  EXPECT_EQ(window->m_Bitmap.Width, 200);
  EXPECT_EQ(window->m_SmartBitmap.Width, 50);
  EXPECT_EQ(window->m_SmartBitmap.Height, 25);
  window->ZoomToScaleFactor(1.0);
  EXPECT_TRUE(window->Rotate(90, true));
  EXPECT_EQ(window->m_Bitmap.Width, 100);
  EXPECT_EQ(window->m_SmartBitmap.Width, 50) << "left from before and not painted";
}

TEST_F(Rotation, ATurnThatCantBeMadeIsReportedAndForgotten) {
  Show({{100, 200}});
  EXPECT_FALSE(window->Rotate(45, true));
  EXPECT_EQ(Reports().size(), 1U);
  EXPECT_EQ(window->m_nRotation, 0);
  EXPECT_EQ(window->m_szScaled, CSize(100, 200));
}

}  // namespace
