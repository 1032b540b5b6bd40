// What the standard library throws in a handler doesn't reach the loop: it is told, and the program goes on.

#include <new>
#include <stdexcept>

#include "imaging/ltwrap.h"
#include "tests/imagewindow/window_fixture.h"

namespace {

/// Throws while it handles one message.
template <typename Base>
class Throwing : public Base {
 public:
  UINT at = 0;
  bool noMemory = true;

 protected:
  BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override {
    if (message != at) return Base::OnWndMsg(message, wParam, lParam, result);
    if (noMemory) throw std::bad_alloc();
    throw std::length_error("too long");
  }
};

std::vector<std::string>& Told() {
  static std::vector<std::string> told;
  return told;
}

class Thrown : public ImageWindowTest {
 protected:
  /// As they come: sent, posted, and as the window system wants something painted or sized.
  template <typename Window>
  void Throw(Window& at, const char* memory) {
    for (const bool noMemory : {true, false})
      for (const UINT message :
           std::initializer_list<UINT>{WM_PAINT, WM_SIZE, WM_TIMER, WM_KEYDOWN, WM_USER + 5}) {
        SCOPED_TRACE(message);
        Told().clear();
        at.noMemory = noMemory;
        at.at = message;
        if (message == WM_PAINT)
          at.Invalidate();
        else
          ::PostMessage(at.m_hWnd, message, 0, 0);
        platform::testing::PumpUntilIdle();
        at.at = 0;
        ASSERT_GE(Told().size(), 1U);
        EXPECT_NE(Told()[0].find(noMemory ? memory : "too long"), std::string::npos) << Told()[0];
      }
  }
};

TEST_F(Thrown, APageWindowReportsIt) {
  Throwing<CImageWindow> thrower;
  thrower.SetReportErrorCallBack([](int code, CString text) {
    Told().emplace_back(std::to_string(code) + " " + static_cast<const char*>(text));
  });
  ASSERT_TRUE(thrower.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 200), frame, 7));
  Throw(thrower, "-1 ");
  thrower.at = WM_CREATE;
  thrower.DestroyWindow();
  EXPECT_FALSE(thrower.Create(nullptr, "", WS_CHILD, CRect(0, 0, 200, 200), frame, 7));
}

TEST_F(Thrown, AnyOtherWindowShowsABox) {
  platform::testing::SetMessageBoxAnswer([](const CString& text, UINT) {
    Told().emplace_back(static_cast<const char*>(text));
    return 1;
  });
  Throwing<CWnd> thrower;
  ASSERT_TRUE(thrower.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 200), frame, 7));
  Throw(thrower, "emoria");
  thrower.DestroyWindow();
  platform::testing::SetMessageBoxAnswer(nullptr);
}

}  // namespace
