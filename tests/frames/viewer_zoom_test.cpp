// Zoom, modes and rotation by command and mouse; the scale in pane, combo and settings.

#include "tests/frames/viewer_fixture.h"

namespace {

template <typename Frame>
class ViewerZoom : public ViewerTestOf<Frame> {
 protected:
  void ExpectScale(int percent, const std::string& what) {
    EXPECT_EQ(this->Percent(), percent) << what;
    EXPECT_EQ(this->ZoomPane(), "Zoom 1:" + std::to_string(percent)) << what;
    EXPECT_EQ(this->ScaleText(), std::to_string(percent) + "%") << what;
  }
};
TYPED_TEST_SUITE(ViewerZoom, BothFrames);

TYPED_TEST(ViewerZoom, StepsReachPaneAndCombo) {
  this->Open(1);
  struct Case {
    UINT command;
    int percent;
  };
  const Case cases[] = {{ID_ZP_ZOOM_IN, 200},
                        {ID_ZP_ZOOM_IN, 300},
                        {ID_ZP_ZOOM_OUT, 200},
                        {ID_ZP_ZOOM_OUT, 100},
                        {ID_ZP_ZOOM_OUT, 50}};
  for (const Case& c : cases) {
    this->Command(c.command);
    this->ExpectScale(c.percent, std::to_string(c.command));
  }
}

TYPED_TEST(ViewerZoom, FitsFillTheWindow) {
  for (const UINT fit : {ID_ZP_ZOOM_FIT_TO_WIDTH, ID_ZP_ZOOM_FIT_TO_HEIGHT, ID_ZP_ZOOM_BEST_FIT}) {
    this->MakeFrame();
    this->Open(1);
    CRect client;
    this->frame->m_pImageWnd->GetClientRect(client);
    const double width = client.Width() / 120.0;
    const double height = client.Height() / 80.0;
    this->Command(fit);
    const double wanted = fit == ID_ZP_ZOOM_FIT_TO_WIDTH    ? width
                          : fit == ID_ZP_ZOOM_FIT_TO_HEIGHT ? height
                                                            : std::min(width, height);
    EXPECT_NEAR(this->frame->m_pImageWnd->GetScaleFactor(), wanted, 0.2) << fit;
    this->ExpectScale(this->Percent(), std::to_string(fit));
  }
}

TYPED_TEST(ViewerZoom, ModesSelectionAndRotationReachTheImage) {
  this->Open(2);
  const CImageWindow& image = *this->frame->m_pImageWnd;
  this->Command(ID_ZP_ZOOM_IN_MODE);
  EXPECT_EQ(image.GetMouseMode(), MouseModeZoomIn);
  this->Command(ID_ZP_ZOOM_OUT_MODE);
  EXPECT_EQ(image.GetMouseMode(), MouseModeZoomOut);
  this->Command(ID_ZP_DRAG_MODE);
  EXPECT_EQ(image.GetMouseMode(), MouseModeDrag);
  this->Command(ID_ZP_ZOOM_SELECTED);
  EXPECT_TRUE(image.IsZoomSelected());
  this->Command(ID_ZP_ZOOM_SELECTED);
  EXPECT_FALSE(image.IsZoomSelected());
  this->Command(ID_ZP_ROTATE_RIGHT);
  EXPECT_EQ(image.m_nRotation, 90);
  EXPECT_EQ(image.m_Bitmap.Width, 80);
  this->Command(ID_ZP_ROTATE_180);
  this->Command(ID_ZP_ROTATE_LEFT);
  EXPECT_EQ((image.m_nRotation % 360 + 360) % 360, 180);
  this->Command(ID_ZP_ROTATE_LEFT);
  this->Command(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(image.m_Bitmap.Width, 80) << "the pages that come are turned too";
}

TYPED_TEST(ViewerZoom, MouseAndWheelReachPaneAndCombo) {
  this->Open(1);
  platform::testing::TurnWheel(this->frame->m_pImageWnd->m_hWnd, {20, 20}, 120, false, true);
  this->Settle();
  this->ExpectScale(200, "wheel");
  this->Command(ID_ZP_ZOOM_IN_MODE);
  this->Click(*this->frame->m_pImageWnd, {30, 30});
  this->ExpectScale(300, "click");
  this->Command(ID_ZP_ZOOM_SELECTED);
  const HWND image = this->frame->m_pImageWnd->m_hWnd;
  platform::testing::PressMouse(image, {10, 10});
  platform::testing::MoveMouse(image, {110, 90}, true);
  platform::testing::ReleaseMouse(image, {110, 90});
  this->Settle();
  EXPECT_GT(this->Percent(), 300);
  this->ExpectScale(this->Percent(), "selection");
}

TYPED_TEST(ViewerZoom, TheScaleIsKeptASecondAfterTheLastStep) {
  const auto scaleOfNextWindow = [] { return CImageWindow().GetScalePercent(); };
  this->Open(1);
  this->Command(ID_ZP_ZOOM_IN);
  this->Command(ID_ZP_ZOOM_IN);
  platform::testing::AdvanceTimers(999);
  this->Settle();
  EXPECT_EQ(scaleOfNextWindow(), 100);
  platform::testing::AdvanceTimers(1000);
  this->Settle();
  EXPECT_EQ(scaleOfNextWindow(), 300);
  this->Command(ID_ZP_ZOOM_OUT);
  this->frame->SendMessage(WM_CLOSE);
  this->frame = nullptr;
  platform::testing::AdvanceTimers(1000);
  EXPECT_EQ(scaleOfNextWindow(), 300) << "a step in the last second isn't kept";
  this->MakeFrame();
  this->Open(1);
  this->ExpectScale(300, "next frame");
}

}  // namespace
