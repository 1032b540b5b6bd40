#pragma once

#include "viewing/page_window.h"
#include "viewing/scroll_bars.h"
#include "viewing/viewport.h"

// Position, scroll bars and size of a window that shows a page. A bar that appears or goes changes the client
// area and so runs OnSize inside these calls. What is read after a call may therefore be newer than before
// it; the order of the steps counts. A running fit is no danger: while it zooms, the fit mode is off.

template <typename Base>
void CPageWindow<Base>::UpdateScroll() {
  Self().m_szScaled = viewport::ScaledSize(PageSize(), Self().m_dScaleFactor);
  Self().m_ptScrollMax = viewport::LargestPosition(Self().m_szScaled, Self().m_szClient);
  const auto update = [this](int bar, int scaled, int client, LONG& position) {
    SCROLLINFO info = scroll_bars::Of(scaled, client);
    if constexpr (!Traits::kKeepsMiddle) {
      position = 0;
      info.fMask |= SIF_POS;
    }
    this->SetScrollInfo(bar, &info, TRUE);
  };
  update(SB_HORZ, Self().m_szScaled.cx, Self().m_szClient.cx, Self().m_ptScroll.x);
  update(SB_VERT, Self().m_szScaled.cy, Self().m_szClient.cy, Self().m_ptScroll.y);
}

template <typename Base>
void CPageWindow<Base>::ShowThumbs() {
  // The first may take the other bar away, whose room moves the page: each is read when it is its turn.
  Base::SetScrollPos(SB_HORZ, Self().m_ptScroll.x, TRUE);
  Base::SetScrollPos(SB_VERT, Self().m_ptScroll.y, TRUE);
}

template <typename Base>
void CPageWindow<Base>::SetScrollPos(CPoint position, BOOL erase) {
  Self().m_ptScroll = viewport::Limit(position, Self().m_ptScrollMax);
  ShowThumbs();
  this->InvalidateRect(nullptr, erase);
}

template <typename Base>
void CPageWindow<Base>::MoveScrollPos(CSize offset) {
  SetScrollPos(viewport::Moved(Self().m_ptScroll, offset, Self().m_ptScrollMax), FALSE);
}

template <typename Base>
void CPageWindow<Base>::FitUntilSettled() {
  // A bar that the fit brings or takes changes the client area, which is told inside the fit, while none is
  // running.
  for (int i = 0; i < 3; ++i) {
    const CSize client = Self().m_szClient;
    ZoomToFitMode();
    if (Self().m_szClient == client) break;
  }
}

template <typename Base>
void CPageWindow<Base>::OnSize(UINT type, int cx, int cy) {
  Base::OnSize(type, cx, cy);
  scroll_bars::SetClientSize(*this, {cx, cy});
  Self().m_szClient = CSize(cx, cy);
  Self().m_ptScrollMax = viewport::LargestPosition(Self().m_szScaled, Self().m_szClient);
  if (Traits::kFitRuns && Self().m_nFitMode != FitModeNone) {
    if (Self().ShownPage() == nullptr) {
      if (Self().IsStaleAfterResize(false)) this->InvalidateRect(nullptr, FALSE);
      return;
    }
    FitUntilSettled();
    Self().UpdateZoomStatus();
    return;
  }
  const bool moved = viewport::IsBeyondEnd(Self().m_ptScroll.x, cx, Self().m_szScaled.cx) ||
                     viewport::IsBeyondEnd(Self().m_ptScroll.y, cy, Self().m_szScaled.cy);
  const CPoint before = Self().m_ptScroll;
  Self().m_ptScroll.x =
      viewport::AfterResize(Self().m_ptScroll.x, cx, Self().m_szScaled.cx, Self().m_ptScrollMax.x);
  Self().m_ptScroll.y =
      viewport::AfterResize(Self().m_ptScroll.y, cy, Self().m_szScaled.cy, Self().m_ptScrollMax.y);
  const bool elsewhere = before != Self().m_ptScroll;
  ShowThumbs();
  if (elsewhere || Self().IsStaleAfterResize(moved)) this->InvalidateRect(nullptr, FALSE);
}

template <typename Base>
void CPageWindow<Base>::OnHScroll(UINT code, UINT position, CScrollBar* bar) {
  scroll_bars::Event event = {SB_HORZ, code, position};
  if (scroll_bars::Follow(*this, &event, {Self().m_ptScroll.x, Self().m_ptScrollMax.x, Self().m_szClient.cx},
                          &Self().m_ptScroll.x) &&
      Traits::kScrollPaints)
    this->UpdateWindow();
  Base::OnHScroll(code, event.position, bar);
}

template <typename Base>
void CPageWindow<Base>::OnVScroll(UINT code, UINT position, CScrollBar* bar) {
  scroll_bars::Event event = {SB_VERT, code, position};
  if (scroll_bars::Follow(*this, &event, {Self().m_ptScroll.y, Self().m_ptScrollMax.y, Self().m_szClient.cy},
                          &Self().m_ptScroll.y) &&
      Traits::kScrollPaints)
    this->UpdateWindow();
  Base::OnVScroll(code, event.position, bar);
}
