#include "docview/zp_doc.h"
#include "docview/zp_view.h"
#include "viewing/viewport.h"
#include "viewing/window_parts.h"

// A bar that appears or goes changes the client area and so runs OnSize inside these calls. What is read
// after a call may therefore be newer than before it; the order of the steps counts. A running fit is no
// danger: while it zooms, the fit mode is off.

void CZPView::UpdateScroll() {
  m_szScaled = viewport::ScaledSize(PageSize(), m_dScaleFactor);
  m_ptScrollMax = viewport::LargestPosition(m_szScaled, m_szClient);
  SCROLLINFO horizontal = window_parts::BarOf(m_szScaled.cx, m_szClient.cx);
  SetScrollInfo(SB_HORZ, &horizontal, TRUE);
  SCROLLINFO vertical = window_parts::BarOf(m_szScaled.cy, m_szClient.cy);
  SetScrollInfo(SB_VERT, &vertical, TRUE);
}

void CZPView::SetScrollPos(CPoint position, BOOL erase) {
  m_ptScroll = viewport::Limit(position, m_ptScrollMax);
  window_parts::ShowPosition(*this, m_ptScroll);
  InvalidateRect(nullptr, erase);
}

void CZPView::SetZoomedScrollPos(double oldFactor) {
  SetScrollPos(view::KeepingCentre(m_ptScroll, m_szClient, m_dScaleFactor / oldFactor), TRUE);
}

void CZPView::MoveScrollPos(CSize offset) {
  m_ptScroll = viewport::Moved(m_ptScroll, offset, m_ptScrollMax);
  window_parts::ShowPosition(*this, m_ptScroll);
  InvalidateRect(nullptr, FALSE);
}

void CZPView::OnSize(UINT type, int cx, int cy) {
  CView::OnSize(type, cx, cy);
  window_parts::SetClientSize(*this, {cx, cy});
  m_szClient = CSize(cx, cy);
  m_ptScrollMax = viewport::LargestPosition(m_szScaled, m_szClient);
  if (m_nFitMode != 0) {
    if (m_pBitmap == nullptr) return;
    ZoomToFitMode();
    UpdateZoomStatus();
    return;
  }
  const bool moved = viewport::IsBeyondEnd(m_ptScroll.x, cx, m_szScaled.cx) ||
                     viewport::IsBeyondEnd(m_ptScroll.y, cy, m_szScaled.cy);
  m_ptScroll.x = viewport::AfterResize(m_ptScroll.x, cx, m_szScaled.cx, m_ptScrollMax.x);
  m_ptScroll.y = viewport::AfterResize(m_ptScroll.y, cy, m_szScaled.cy, m_ptScrollMax.y);
  window_parts::ShowPosition(*this, m_ptScroll);
  // The crossed box follows the window.
  const CZPDoc* const document = Document();
  const bool crossed = m_pBitmap == nullptr && document != nullptr && document->GetPagesNum() > 0;
  if (moved || crossed) InvalidateRect(nullptr, FALSE);
}

// Unlike the image window, the view shows at once where it has been scrolled to.

void CZPView::OnHScroll(UINT code, UINT position, CScrollBar* bar) {
  window_parts::ScrollEvent event = {SB_HORZ, code, position};
  if (window_parts::Scroll(*this, &event, {m_ptScroll.x, m_ptScrollMax.x, m_szClient.cx}, &m_ptScroll.x))
    UpdateWindow();
  CView::OnHScroll(code, event.position, bar);
}

void CZPView::OnVScroll(UINT code, UINT position, CScrollBar* bar) {
  window_parts::ScrollEvent event = {SB_VERT, code, position};
  if (window_parts::Scroll(*this, &event, {m_ptScroll.y, m_ptScrollMax.y, m_szClient.cy}, &m_ptScroll.y))
    UpdateWindow();
  CView::OnVScroll(code, event.position, bar);
}
