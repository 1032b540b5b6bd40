// Zoom, modes and rotation by command and mouse; the scale in pane, combo and settings.

#include "tests/frames/viewer_fixture.h"

namespace {

class ViewerZoom : public ViewerTest {
 protected:
  void ExpectScale(int percent, const std::string& what) {
    EXPECT_EQ(Percent(), percent) << what;
    EXPECT_EQ(ZoomPane(), "Zoom 1:" + std::to_string(percent)) << what;
    EXPECT_EQ(ScaleText(), std::to_string(percent) + "%") << what;
  }
};

TEST_F(ViewerZoom, StepsReachPaneAndCombo) {
  Open(1);
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
    Command(c.command);
    ExpectScale(c.percent, std::to_string(c.command));
  }
}

TEST_F(ViewerZoom, FitsFillTheWindow) {
  for (const UINT fit : {ID_ZP_ZOOM_FIT_TO_WIDTH, ID_ZP_ZOOM_FIT_TO_HEIGHT, ID_ZP_ZOOM_BEST_FIT}) {
    MakeFrame();
    Open(1);
    CRect client;
    frame->m_pImageWnd->GetClientRect(client);
    const double width = client.Width() / 120.0;
    const double height = client.Height() / 80.0;
    Command(fit);
    const double wanted = fit == ID_ZP_ZOOM_FIT_TO_WIDTH    ? width
                          : fit == ID_ZP_ZOOM_FIT_TO_HEIGHT ? height
                                                            : std::min(width, height);
    EXPECT_NEAR(frame->m_pImageWnd->GetScaleFactor(), wanted, 0.2) << fit;
    ExpectScale(Percent(), std::to_string(fit));
  }
}

TEST_F(ViewerZoom, ModesSelectionAndRotationReachTheImage) {
  Open(2);
  const CImageWindow& image = *frame->m_pImageWnd;
  Command(ID_ZP_ZOOM_IN_MODE);
  EXPECT_EQ(image.GetMouseMode(), MouseModeZoomIn);
  Command(ID_ZP_ZOOM_OUT_MODE);
  EXPECT_EQ(image.GetMouseMode(), MouseModeZoomOut);
  Command(ID_ZP_DRAG_MODE);
  EXPECT_EQ(image.GetMouseMode(), MouseModeDrag);
  Command(ID_ZP_ZOOM_SELECTED);
  EXPECT_TRUE(image.IsZoomSelected());
  Command(ID_ZP_ZOOM_SELECTED);
  EXPECT_FALSE(image.IsZoomSelected());
  Command(ID_ZP_ROTATE_RIGHT);
  EXPECT_EQ(image.m_nRotation, 90);
  EXPECT_EQ(image.m_Bitmap.Width, 80);
  Command(ID_ZP_ROTATE_180);
  Command(ID_ZP_ROTATE_LEFT);
  EXPECT_EQ((image.m_nRotation % 360 + 360) % 360, 180);
  Command(ID_ZP_ROTATE_LEFT);
  Command(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(image.m_Bitmap.Width, 80) << "the pages that come are turned too";
}

TEST_F(ViewerZoom, MouseAndWheelReachPaneAndCombo) {
  Open(1);
  platform::testing::TurnWheel(frame->m_pImageWnd->m_hWnd, {20, 20}, 120, false, true);
  Settle();
  ExpectScale(200, "wheel");
  Command(ID_ZP_ZOOM_IN_MODE);
  Click(*frame->m_pImageWnd, {30, 30});
  ExpectScale(300, "click");
  Command(ID_ZP_ZOOM_SELECTED);
  const HWND image = frame->m_pImageWnd->m_hWnd;
  platform::testing::PressMouse(image, {10, 10});
  platform::testing::MoveMouse(image, {110, 90}, true);
  platform::testing::ReleaseMouse(image, {110, 90});
  Settle();
  EXPECT_GT(Percent(), 300);
  ExpectScale(Percent(), "selection");
}

TEST_F(ViewerZoom, TheScaleIsKeptASecondAfterTheLastStep) {
  const auto scaleOfNextWindow = [] { return CImageWindow().GetScalePercent(); };
  Open(1);
  Command(ID_ZP_ZOOM_IN);
  Command(ID_ZP_ZOOM_IN);
  platform::testing::AdvanceTimers(999);
  Settle();
  EXPECT_EQ(scaleOfNextWindow(), 100);
  platform::testing::AdvanceTimers(1000);
  Settle();
  EXPECT_EQ(scaleOfNextWindow(), 300);
  Command(ID_ZP_ZOOM_OUT);
  frame->SendMessage(WM_CLOSE);
  frame = nullptr;
  platform::testing::AdvanceTimers(1000);
  EXPECT_EQ(scaleOfNextWindow(), 300) << "a step in the last second isn't kept";
  MakeFrame();
  Open(1);
  ExpectScale(300, "next frame");
}

}  // namespace
