// The viewer inside a Qt program.

#include <gtest/gtest.h>

#include <QDockWidget>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QTimer>
#include <cstdlib>

#include "examples/qt/viewer_widget.h"
#include "tessarel12_testing.h"

namespace {

namespace ui = platform::testing;

class QtViewer : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    static int argc = 1;
    static char name[] = "host";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);  // lives as long as the process
  }
  static void Exec(int milliseconds) {
    QTimer::singleShot(milliseconds, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
  }
};

TEST_F(QtViewer, DockedItFillsItsWidgetTakesKeysAndEndsWithIt) {
  QMainWindow window;
  window.setCentralWidget(new QPlainTextEdit);
  auto* dock = new QDockWidget("Fax", &window);
  auto* viewer = new ViewerWidget;
  dock->setWidget(viewer);
  window.addDockWidget(Qt::RightDockWidgetArea, dock);
  window.resize(1200, 800);
  window.show();
  ASSERT_TRUE(viewer->Open(SAMPLE_FAX));
  window.resizeDocks({dock}, {700}, Qt::Horizontal);
  Exec(100);
  CImageFrame* frame = viewer->Frame();
  RECT client;
  ::GetClientRect(*frame, &client);
  EXPECT_EQ(client.right, viewer->width());
  EXPECT_EQ(client.bottom, viewer->height());
  EXPECT_EQ(frame->m_pImageWnd->GetMaxPage(), 3);
  ::SetFocus(*frame->m_pImageWnd);
  ui::PressKey(*frame->m_pImageWnd, VK_DOWN);
  Exec(100);
  EXPECT_GT(frame->m_pImageWnd->m_ptScroll.y, 0);
  frame->SendMessage(WM_COMMAND, ID_ZP_NEXT_PAGE);
  Exec(50);
  EXPECT_EQ(frame->m_pImageWnd->GetCurrPage(), 2);
  if (const char* folder = std::getenv("TESSAREL_PICTURES")) window.grab().save(QString(folder) + "/qt.png");
  const HWND inside = *frame;
  delete dock;
  EXPECT_FALSE(IsWindow(inside));
  Exec(20);
}

TEST_F(QtViewer, ModalItHoldsTheHostsWindowUntilItIsClosed) {
  QMainWindow window;
  window.show();
  // However long the viewer is in coming.
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, [&] {
    if (!window.isEnabled() && GetActiveWindow() != nullptr) PostMessage(GetActiveWindow(), WM_CLOSE);
  });
  look.start(50);
  EXPECT_TRUE(ShowModal(&window, SAMPLE_FAX));
  EXPECT_TRUE(window.isEnabled());
}

}  // namespace
