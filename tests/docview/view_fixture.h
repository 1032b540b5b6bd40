#pragma once

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "docview/document_frame.h"
#include "docview/zp_doc.h"
#include "docview/zp_view.h"
#include "platform/framework/frame_wnd.h"
#include "tessarel12_testing.h"
#include "tests/docview/page_fixture.h"
#include "tests/imagewindow/client_size.h"

/// The view with its protected side open, and a record of what reaches it. Its overrides are a host's.
class TestView : public CZPView {
  DECLARE_DYNCREATE(TestView)
 public:
  using CZPView::DisplayBmp;
  using CZPView::DoSmartResizing;
  using CZPView::GetWidthBytes;
  using CZPView::m_bShiftDown;
  using CZPView::m_bZoomSelect;
  using CZPView::m_dScaleFactor;
  using CZPView::m_nZoomDivisor;
  using CZPView::m_pBitmap;
  using CZPView::m_ptScroll;
  using CZPView::m_ptScrollMax;
  using CZPView::m_SmartBitmap;
  using CZPView::m_szClient;
  using CZPView::m_szScaled;
  using CZPView::MoveScrollPos;
  using CZPView::OnDraw;
  using CZPView::SetScrollPos;

  void ZoomFitToWidth() override {
    trace += "width ";
    CZPView::ZoomFitToWidth();
  }
  void ZoomFitToHeight() override {
    trace += "height ";
    CZPView::ZoomFitToHeight();
  }
  void ZoomBestFit() override {
    trace += "best ";
    CZPView::ZoomBestFit();
  }
  int SetMouseMode(int mode) override {
    trace += "mode" + std::to_string(mode) + " ";
    return CZPView::SetMouseMode(mode);
  }
  void DoSmartResizing() override {
    trace += "reduce ";
    CZPView::DoSmartResizing();
  }
  int DisplayBmp(CDC* dc) override {
    trace += "display ";
    return takesPainting ? 1 : CZPView::DisplayBmp(dc);
  }
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    messages.push_back(message);
    return CZPView::WindowProc(message, wParam, lParam);
  }

  int Count(UINT message) const {
    return static_cast<int>(std::count(messages.begin(), messages.end(), message));
  }
  int CountOf(const std::string& name) const {
    int count = 0;
    for (std::size_t at = trace.find(name); at != std::string::npos; at = trace.find(name, at + 1)) ++count;
    return count;
  }
  bool HasCopy() const { return (m_SmartBitmap.Flags & leadtools12::kAllocated) != 0; }

  std::string trace;
  std::vector<UINT> messages;
  bool takesPainting = false;  ///< paints the page itself: nothing
};

/// A host's document, some pages of which can't be decoded. Its pages tell when they are loaded.
class TestDoc : public CZPDoc {
  DECLARE_DYNCREATE(TestDoc)
 public:
  static inline std::set<int> failing;
  static inline std::function<void()> onLoad;

 private:
  struct Page : CZPPage {
    using CZPPage::LoadPage;
    int LoadPage(const char* file, int page, leadtools12::LoadRowCallback callback, void* data) override {
      if (onLoad) onLoad();
      return failing.count(page) != 0 ? 0 : CZPPage::LoadPage(file, page, callback, data);
    }
  };
  CZPPage* CreatePage() override { return new Page; }
};

class TestFrame : public CFrameWnd, public CZPDocumentFrame {
 public:
  void UpdateFrame() override {}
  void UpdateZoomStatus() override { ++zooms; }
  void InitialFrameUpdate() override { ++opens; }
  int zooms = 0;
  int opens = 0;
};

/// A view in a shown frame, a document without pages, and a fresh user.
class ViewTest : public PageTest {
 protected:
  void SetUp() override {
    PageTest::SetUp();
    ::setenv("XDG_CONFIG_HOME", Folder().c_str(), 1);
    TestDoc::failing.clear();
    TestDoc::onLoad = nullptr;
    MakeView();
  }
  void TearDown() override {
    frame->DestroyWindow();  // which ends view and document
    PageTest::TearDown();
  }

  void MakeView() {
    if (frame != nullptr) frame->DestroyWindow();
    document = static_cast<TestDoc*>(RUNTIME_CLASS(TestDoc)->CreateObject());
    CCreateContext context;
    context.m_pNewViewClass = RUNTIME_CLASS(TestView);
    context.m_pCurrentDoc = document;
    frame = new TestFrame;  // deletes itself with its window
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 700, 500), nullptr, nullptr,
                              0, &context));
    frame->InitialUpdateFrame(document, TRUE);
    view = dynamic_cast<TestView*>(frame->GetActiveView());
    ASSERT_NE(view, nullptr);
    SetClient(400, 300);
  }
  /// Gives the view a client area of this size, whatever borders and bars take.
  void SetClient(int width, int height) {
    GiveClientSize(*frame, *view, width, height);
    ASSERT_EQ(view->m_szClient, CSize(width, height));
  }
  void Show(const std::vector<Page>& pages) {
    document->OnOpenDocument(File(pages).c_str());
    Settle();
  }
  /// Lets everything be painted, and forgets the records.
  void Settle() {
    platform::testing::PumpUntilIdle();
    view->UpdateWindow();
    view->messages.clear();
    view->trace.clear();
    frame->zooms = 0;
  }
  void Hint(LPARAM hint, std::intptr_t object) {
    document->UpdateAllViews(nullptr, hint, reinterpret_cast<CObject*>(object));
  }
  /// 0xRRGGBB at a point of the client area, as it was painted.
  unsigned Pixel(int x, int y) {
    const CClientDC dc(view);
    const COLORREF color = dc.GetPixel(x, y);
    return static_cast<unsigned>(GetRValue(color) << 16 | GetGValue(color) << 8 | GetBValue(color));
  }
  bool IsInvalid() {
    CRect rect;
    return view->GetUpdateRect(rect) != FALSE;
  }
  int BarRange(int bar) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    view->GetScrollInfo(bar, &info);
    return info.nMax;
  }
  void Press(CPoint point) {
    platform::testing::PressMouse(*view, point);
    platform::testing::PumpUntilIdle();
  }
  void Move(CPoint point) {
    platform::testing::MoveMouse(*view, point, true);
    platform::testing::PumpUntilIdle();
  }
  void Release(CPoint point) {
    platform::testing::ReleaseMouse(*view, point);
    platform::testing::PumpUntilIdle();
  }
  void Click(CPoint point) {
    Press(point);
    Release(point);
  }

  TestFrame* frame = nullptr;
  TestDoc* document = nullptr;
  TestView* view = nullptr;
};
