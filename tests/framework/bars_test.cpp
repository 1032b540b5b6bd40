// Toolbar, status bar and what a frame does for them.

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/framework/thread.h"
#include "platform/testing.h"
#include "tests/framework/bars_fixture.h"

using namespace bars_test;  // NOLINT: the tests' own names
namespace desktop = platform::testing;

namespace {

class Bars : public ::testing::Test {
 protected:
  Bars() : m_frame(Frame::Show(700, 400)) {}
  ~Bars() override {
    m_frame->DestroyWindow();
    desktop::PumpUntilIdle();
  }
  static void Idle() {
    for (LONG count = 0; AfxGetThread()->OnIdle(count) != 0;) ++count;
    desktop::PumpUntilIdle();
  }
  CPoint Middle(int button) const {
    CRect place;
    m_frame->toolbar.GetItemRect(button, place);
    return place.CenterPoint();
  }
  Frame* m_frame;
};

/// A window's place in the client area of its frame.
CRect PlaceIn(const CWnd& frame, const CWnd& window) {
  CRect rect;
  window.GetWindowRect(rect);
  CPoint corner = rect.TopLeft();
  frame.ScreenToClient(&corner);
  rect.MoveToXY(corner);
  return rect;
}

/// TESSAREL_PICTURES names a folder for pictures to look at.
void Picture(const CWnd& window, const std::string& name) {
  const char* folder = std::getenv("TESSAREL_PICTURES");
  if (folder != nullptr) desktop::SaveWindowPicture(window, (std::string(folder) + "/" + name).c_str());
}

TEST_F(Bars, BarsTakeTheEdgesAndThePaneTheRest) {
  CRect client;
  m_frame->GetClientRect(client);
  const CRect toolbar = PlaceIn(*m_frame, m_frame->toolbar);
  const CRect status = PlaceIn(*m_frame, m_frame->status);
  const CRect pane = PlaceIn(*m_frame, m_frame->splitter);
  EXPECT_EQ(toolbar.TopLeft(), CPoint(0, 0));
  EXPECT_EQ(toolbar.right, client.right);
  EXPECT_EQ(toolbar.Height(), 23 + 2 * 2 + 1) << "buttons, room above and below, the line";
  EXPECT_EQ(status.bottom, client.bottom);
  EXPECT_EQ(pane, CRect(0, toolbar.bottom, client.right, status.top));
  Picture(*m_frame, "frame.png");
}

}  // namespace
