#include "imagewindow/image_window.h"
#include "viewing/viewport.h"
#include "viewing/window_parts.h"

// A bar that appears or goes changes the client area and so runs OnSize inside these calls. What is read
// after a call may therefore be newer than before it; the order of the steps counts.

void CImageWindow::UpdateScroll() {
  m_szScaled = viewport::ScaledSize(PageSize(), m_dScaleFactor);
  m_ptScrollMax = viewport::LargestPosition(m_szScaled, m_szClient);
  m_ptScroll.x = 0;
  SCROLLINFO horizontal = window_parts::BarOf(m_szScaled.cx, m_szClient.cx);
  horizontal.fMask |= SIF_POS;
  SetScrollInfo(SB_HORZ, &horizontal, TRUE);
  m_ptScroll.y = 0;
  SCROLLINFO vertical = window_parts::BarOf(m_szScaled.cy, m_szClient.cy);
  vertical.fMask |= SIF_POS;
  SetScrollInfo(SB_VERT, &vertical, TRUE);
}

void CImageWindow::SetScrollPos(CPoint position, int erase) {
  m_ptScroll = viewport::Limit(position, m_ptScrollMax);
  window_parts::ShowPosition(*this, m_ptScroll);
  InvalidateRect(nullptr, erase);
}

void CImageWindow::MoveScrollPos(CSize offset) {
  m_ptScroll = viewport::Moved(m_ptScroll, offset, m_ptScrollMax);
  window_parts::ShowPosition(*this, m_ptScroll);
  InvalidateRect(nullptr, FALSE);
}

void CImageWindow::OnSize(UINT type, int cx, int cy) {
  CWnd::OnSize(type, cx, cy);
  window_parts::SetClientSize(*this, {cx, cy});
  m_szClient = CSize(cx, cy);
  m_ptScrollMax = viewport::LargestPosition(m_szScaled, m_szClient);
  m_ptScroll.x = viewport::AfterResize(m_ptScroll.x, cx, m_szScaled.cx, m_ptScrollMax.x);
  m_ptScroll.y = viewport::AfterResize(m_ptScroll.y, cy, m_szScaled.cy, m_ptScrollMax.y);
  window_parts::ShowPosition(*this, m_ptScroll);
  // At the top left corner the page stays where it was, and what is uncovered is invalid already.
  if (m_ptScroll.x != 0 || m_ptScroll.y != 0) InvalidateRect(nullptr, FALSE);
}

void CImageWindow::OnHScroll(UINT code, UINT position, CScrollBar* bar) {
  window_parts::ScrollEvent event = {SB_HORZ, code, position};
  window_parts::Scroll(*this, &event, {m_ptScroll.x, m_ptScrollMax.x, m_szClient.cx}, &m_ptScroll.x);
  CWnd::OnHScroll(code, event.position, bar);
}

void CImageWindow::OnVScroll(UINT code, UINT position, CScrollBar* bar) {
  window_parts::ScrollEvent event = {SB_VERT, code, position};
  window_parts::Scroll(*this, &event, {m_ptScroll.y, m_ptScrollMax.y, m_szClient.cy}, &m_ptScroll.y);
  CWnd::OnVScroll(code, event.position, bar);
}
