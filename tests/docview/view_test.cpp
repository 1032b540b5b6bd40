// The document's view: what reaches it from the document, and scale and position from then on.

#include "imagewindow/image_window.h"
#include "platform/registry/registry.h"
#include "tests/docview/view_fixture.h"

IMPLEMENT_DYNCREATE(TestView, CZPView)
IMPLEMENT_DYNCREATE(TestDoc, CZPDoc)

namespace {

constexpr int kHalfTurn = 18000;
constexpr int kQuarterTurn = 9000;

class View : public ViewTest {};

TEST_F(View, HintsOfOtherPagesChangeNothing) {
  Show({{2000, 1600}, {1000, 900}, {1800, 1700}, {600, 500}});
  ASSERT_EQ(document->SetActivePage(2), 1);
  EXPECT_EQ(view->m_pBitmap, document->GetHBitmap(2));
  view->ZoomToScaleFactor(0.5);
  const struct {
    LPARAM hint;
    std::intptr_t page;
    bool concerns;
  } cases[] = {{1, 3, false}, {1, 2, true}, {1, -1, true}, {0, 0, true}, {2, 0, true}};
  for (const auto& c : cases) {
    view->SetScrollPos(CPoint(70, 60), FALSE);
    Settle();
    Hint(c.hint, c.page);
    EXPECT_EQ(view->m_ptScroll, c.concerns ? CPoint(0, 0) : CPoint(70, 60)) << c.hint << ' ' << c.page;
    EXPECT_EQ(view->CountOf("reduce"), c.concerns ? 1 : 0) << c.hint << ' ' << c.page;
    EXPECT_EQ(IsInvalid(), c.concerns) << c.hint << ' ' << c.page;
    EXPECT_EQ(frame->zooms, c.concerns ? 1 : 0);
    EXPECT_EQ(view->GetScalePercent(), 50);
  }
}

TEST_F(View, ScaleAndModesOutlastPages) {
  Show({{2000, 1600}, {1000, 1800}});
  view->ZoomToScaleFactor(0.37);
  view->SetMouseMode(ViewMouseZoomOut);
  document->SetActivePage(1);
  EXPECT_EQ(view->GetScalePercent(), 37);
  EXPECT_EQ(view->m_szScaled, CSize(370, 666));
  EXPECT_EQ(view->GetMouseMode(), ViewMouseZoomOut);
  EXPECT_EQ(document->Rotate(kQuarterTurn), 1);
  EXPECT_EQ(view->m_szScaled, CSize(666, 370));
  view->SetScrollPos(CPoint(20, 30), FALSE);
  EXPECT_EQ(document->Rotate(kHalfTurn), 1);
  EXPECT_EQ(view->m_ptScroll, CPoint(0, 0));
  // The next document, too.
  Show({{500, 500}});
  EXPECT_EQ(view->m_szScaled, CSize(185, 185));
}

void StoreScale(UINT percent) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "software\\Morvane Software Works\\Tessarel12\\1.0\\Settings",
                            0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegSetValueExA(key, "Scale", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&percent), sizeof percent);
  RegCloseKey(key);
}

TEST_F(View, ScaleOfTheSettings) {
  const struct {
    UINT stored;
    int shown;
  } cases[] = {{50, 50}, {0, 100}, {1001, 100}, {1000, 1000}, {0xfffffffb, 100}};
  for (const auto& c : cases) {
    StoreScale(c.stored);
    MakeView();
    EXPECT_DOUBLE_EQ(view->m_dScaleFactor, c.stored * 0.01) << "not looked at before there is a page";
    EXPECT_EQ(view->m_nZoomDivisor, 1);
    Show({{700, 800}});
    EXPECT_EQ(view->GetScalePercent(), c.shown) << c.stored;
  }
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(View, WithoutAPageTheScaleWaits) {
  EXPECT_EQ(view->ZoomToScaleFactor(0.5), 1);
  EXPECT_EQ(view->m_nZoomDivisor, 2);
  EXPECT_EQ(view->ZoomInPossible(), 0);
  EXPECT_EQ(view->ZoomOutPossible(), 0);
  view->ZoomIn();
  view->ZoomOut();
  for (const int mode : {1, 2, 3, 4, 0}) view->SetFitMode(mode);
  view->ZoomBestFit();
  view->SetFitMode(1);
  SetClient(300, 200);
  EXPECT_EQ(view->GetScalePercent(), 50);
  EXPECT_EQ(view->m_szScaled, CSize(0, 0));
}

// Zoom

TEST_F(View, AZoomKeepsTheMiddle) {
  Show({{4000, 3200}});
  const struct {
    double from;
    CPoint at;
    double to;  // 0: a step in, below 0: a step out
    double factor;
  } cases[] = {{1.0, {500, 400}, 0, 2.0},     {2.0, {1200, 950}, -1, 1.0}, {1.0, {500, 400}, 0.75, 0.75},
               {0.5, {300, 200}, 0.37, 0.37}, {3.0, {0, 0}, 5.5, 5.5},     {1.0, {500, 400}, 1.0, 1.0}};
  for (const auto& c : cases) {
    view->ZoomToScaleFactor(c.from);
    view->SetScrollPos(c.at, FALSE);
    const CPoint at = view->m_ptScroll;
    if (c.to > 0)
      EXPECT_EQ(view->ZoomToScaleFactor(c.to), 1);
    else if (c.to < 0)
      view->ZoomOut();
    else
      view->ZoomIn();
    ASSERT_DOUBLE_EQ(view->m_dScaleFactor, c.factor);
    const double ratio = c.factor / c.from;
    const CSize client = view->m_szClient;
    const CPoint kept(static_cast<int>((client.cx / 2) * (ratio - 1) + at.x * ratio),
                      static_cast<int>((client.cy / 2) * (ratio - 1) + at.y * ratio));
    EXPECT_EQ(view->m_ptScroll, kept) << c.from << " to " << c.factor;
  }
}

TEST_F(View, AZoomKeepsTheMiddleWhenABarGoes) {
  // At half the size the page is narrower than the window, but still much longer.
  Show({{600, 4000}});
  view->SetScrollPos(CPoint(0, view->m_ptScrollMax.y), FALSE);
  const int bottom = view->m_ptScroll.y;
  view->ZoomOut();
  EXPECT_EQ(view->m_szScaled, CSize(300, 2000));
  const int kept = static_cast<int>((view->m_szClient.cy / 2) * -0.5 + bottom * 0.5);
  EXPECT_EQ(view->m_ptScroll, CPoint(0, std::min(kept, static_cast<int>(view->m_ptScrollMax.y))));
}

TEST_F(View, LimitsOfTheSteps) {
  Show({{20, 20}});
  view->ZoomToScaleFactor(0.25);
  EXPECT_EQ(view->ZoomOutPossible(), 0);
  view->ZoomOut();
  EXPECT_EQ(view->GetScalePercent(), 25);
  view->ZoomToScaleFactor(0.1);
  EXPECT_EQ(view->GetScalePercent(), 25) << "no side below 5 pixels";
  view->ZoomToScaleFactor(0.5);
  EXPECT_EQ(view->ZoomOutPossible(), 1);
  view->ZoomToScaleFactor(10.0);
  EXPECT_EQ(view->ZoomInPossible(), 0);
  EXPECT_EQ(view->ZoomToScaleFactor(10.01), 0);
  EXPECT_EQ(view->ZoomToScaleFactor(0.0099), 0);
  EXPECT_EQ(view->GetScalePercent(), 1000);
}

// Fits

TEST_F(View, AFitRunsOn) {
  Show({{1700, 2200}, {800, 3000}});
  view->SetFitMode(FitModeWidth);
  const int percent = view->GetScalePercent();
  EXPECT_EQ(view->m_szScaled.cx, view->m_szClient.cx - 1);
  Settle();
  SetClient(620, 260);
  EXPECT_GT(view->GetScalePercent(), percent);
  EXPECT_NEAR(view->m_szScaled.cx, 619, 1);
  EXPECT_GT(frame->zooms, 0) << "the frame shows the new scale";
  document->SetActivePage(1);
  EXPECT_NEAR(view->m_szScaled.cx, 619, 1);
  EXPECT_EQ(view->GetFitMode(), FitModeWidth);

  view->ZoomIn();
  EXPECT_EQ(view->GetFitMode(), FitModeNone);
  const double factor = view->m_dScaleFactor;
  Settle();
  SetClient(400, 300);
  EXPECT_EQ(view->m_dScaleFactor, factor);
  EXPECT_EQ(frame->zooms, 0);
}

TEST_F(View, ARunningFitIsRightWhenABarComesOrGoes) {
  Show({{1000, 800}, {400, 3000}, {3000, 400}});
  const CSize sizes[] = {{200, 700}, {900, 700}, {640, 500}, {630, 512}, {1100, 200}, {300, 240}, {317, 253}};
  for (const int mode : {FitModeWidth, FitModeHeight})
    for (int page = 0; page < 3; ++page) {
      document->SetActivePage(page);
      view->SetFitMode(mode);
      for (const CSize from : sizes)
        for (const CSize to : sizes) {
          frame->MoveWindow(0, 0, from.cx, from.cy);
          frame->MoveWindow(0, 0, to.cx, to.cy);
          const std::string what = std::to_string(mode) + " page " + std::to_string(page) + " from " +
                                   std::to_string(from.cx) + " to " + std::to_string(to.cx);
          if (mode == FitModeWidth)
            EXPECT_LT(view->m_szScaled.cx, view->m_szClient.cx) << what;
          else
            EXPECT_LT(view->m_szScaled.cy, view->m_szClient.cy) << what;
          const double factor = view->m_dScaleFactor;
          mode == FitModeWidth ? view->ZoomFitToWidth() : view->ZoomFitToHeight();
          EXPECT_EQ(view->m_dScaleFactor, factor) << what;
          document->SetActivePage((page + 1) % 3);
          document->SetActivePage(page);
          EXPECT_EQ(view->m_dScaleFactor, factor) << what << ", shown again";
        }
    }
}

TEST_F(View, FitsReachTheHostsOperations) {
  Show({{1700, 2200}});
  const struct {
    int mode;
    const char* trace;
  } cases[] = {{FitModeWidth, "width reduce "},
               {FitModeHeight, "height reduce "},
               {FitModeBest, "best height reduce "},
               {7, ""},
               {FitModeNone, ""}};
  for (const auto& c : cases) {
    view->trace.clear();
    view->SetFitMode(c.mode);
    EXPECT_EQ(view->trace, c.trace) << c.mode;
    EXPECT_EQ(view->GetFitMode(), c.mode);
    view->trace.clear();
    view->SetFitMode(c.mode);
    EXPECT_EQ(view->trace, "") << "the same mode again";
  }
}

TEST_F(View, AFitOutsideTheLimitsDoesNothing) {
  Show({{12, 9}});
  view->SetScrollPos(CPoint(0, 0), FALSE);
  Settle();
  view->SetFitMode(FitModeBest);
  EXPECT_EQ(view->GetScalePercent(), 100);
  EXPECT_EQ(view->GetFitMode(), FitModeBest);
  EXPECT_FALSE(IsInvalid());
  SetClient(410, 310);
  EXPECT_EQ(view->GetScalePercent(), 100);
}

TEST_F(View, WhatEndsAFit) {
  Show({{1700, 2200}});
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"refused", [this] { EXPECT_EQ(view->ZoomToScaleFactor(20.0), 0); }},
      {"number", [this] { EXPECT_EQ(view->ZoomToScaleFactor(1.0), 1); }},
      {"in", [this] { view->ZoomIn(); }},
      {"out at the end",
       [this] {
         view->m_nZoomDivisor = 64;
         view->ZoomOut();
       }},
      {"mode", [this] { view->SetFitMode(FitModeNone); }}};
  for (const auto& [name, action] : cases) {
    view->SetFitMode(FitModeWidth);
    action();
    EXPECT_EQ(view->GetFitMode(), FitModeNone) << name;
  }
}

// Scrolling

TEST_F(View, AScrollIsShownAtOnce) {
  Show({{2000, 1600}});
  const CSize client = view->m_szClient;
  const struct {
    UINT message;
    int code;
    CPoint at;
    bool shown;
  } cases[] = {{WM_VSCROLL, SB_LINEUP, {0, 0}, false},
               {WM_VSCROLL, SB_LINEDOWN, {0, 15}, true},
               {WM_HSCROLL, SB_PAGEDOWN, {client.cx - client.cx / 4, 15}, true},
               {WM_HSCROLL, SB_PAGEUP, {0, 15}, true},
               {WM_VSCROLL, SB_ENDSCROLL, {0, 15}, false},
               {WM_VSCROLL, SB_LINEUP, {0, 0}, true}};
  for (const auto& c : cases) {
    Settle();
    view->SendMessage(c.message, static_cast<WPARAM>(c.code));
    EXPECT_EQ(view->m_ptScroll, c.at) << c.code;
    EXPECT_EQ(view->Count(WM_PAINT), c.shown ? 1 : 0) << c.code;
    EXPECT_FALSE(IsInvalid());
  }
  platform::testing::DragThumb(*view, SB_VERT, 333, true);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(view->m_ptScroll, CPoint(0, 333));
}

TEST_F(View, AResizeLimitsThePosition) {
  Show({{1000, 800}});
  view->SetScrollPos(view->m_ptScrollMax, FALSE);
  Settle();
  SetClient(500, 400);
  EXPECT_EQ(view->m_ptScroll, CPoint(500, 400));
  view->SetScrollPos(CPoint(100, 100), FALSE);
  Settle();
  SetClient(450, 350);
  EXPECT_EQ(view->m_ptScroll, CPoint(100, 100));
  // Into the corner, where the page begins: all that was seen has moved.
  SetClient(1200, 900);
  EXPECT_EQ(view->m_ptScroll, CPoint(0, 0));
  EXPECT_TRUE(IsInvalid());
  EXPECT_EQ(frame->zooms, 0);
}

}  // namespace
