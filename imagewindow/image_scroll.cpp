#include "imagewindow/image_window.h"
#include "imagewindow/viewport.h"

namespace {

/// Range from 0 to the scaled size, not one less, so that a bar stays up while the page just fills the
/// window; the fits count on that.
SCROLLINFO BarOf(int scaled, int client) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMax = scaled;
  info.nPage = static_cast<UINT>(client);
  return info;
}

}  // namespace

// A bar that appears or goes changes the client area and so runs OnSize inside these calls. What is read
// after a call may therefore be newer than before it; the order of the steps counts.

void CImageWindow::UpdateScroll() {
  m_szScaled = viewport::ScaledSize(PageSize(), m_dScaleFactor);
  m_ptScrollMax = viewport::LargestPosition(m_szScaled, m_szClient);
  m_ptScroll.x = 0;
  SCROLLINFO horizontal = BarOf(m_szScaled.cx, m_szClient.cx);
  SetScrollInfo(SB_HORZ, &horizontal, TRUE);
  m_ptScroll.y = 0;
  SCROLLINFO vertical = BarOf(m_szScaled.cy, m_szClient.cy);
  SetScrollInfo(SB_VERT, &vertical, TRUE);
}

void CImageWindow::SetScrollPos(CPoint position, int erase) {
  m_ptScroll = viewport::Limit(position, m_ptScrollMax);
  CWnd::SetScrollPos(SB_HORZ, m_ptScroll.x, TRUE);
  CWnd::SetScrollPos(SB_VERT, m_ptScroll.y, TRUE);
  InvalidateRect(nullptr, erase);
}

void CImageWindow::MoveScrollPos(CSize offset) {
  m_ptScroll = viewport::Moved(m_ptScroll, offset, m_ptScrollMax);
  CWnd::SetScrollPos(SB_HORZ, m_ptScroll.x, TRUE);
  CWnd::SetScrollPos(SB_VERT, m_ptScroll.y, TRUE);
  InvalidateRect(nullptr, FALSE);
}

void CImageWindow::OnSize(UINT type, int cx, int cy) {
  CWnd::OnSize(type, cx, cy);
  SCROLLINFO page{};
  page.cbSize = sizeof page;
  page.fMask = SIF_PAGE;
  page.nPage = static_cast<UINT>(cx);
  SetScrollInfo(SB_HORZ, &page, FALSE);
  page.nPage = static_cast<UINT>(cy);
  SetScrollInfo(SB_VERT, &page, FALSE);
  m_szClient = CSize(cx, cy);
  m_ptScrollMax = viewport::LargestPosition(m_szScaled, m_szClient);
  m_ptScroll.x = viewport::AfterResize(m_ptScroll.x, cx, m_szScaled.cx, m_ptScrollMax.x);
  m_ptScroll.y = viewport::AfterResize(m_ptScroll.y, cy, m_szScaled.cy, m_ptScrollMax.y);
  CWnd::SetScrollPos(SB_HORZ, m_ptScroll.x, TRUE);
  CWnd::SetScrollPos(SB_VERT, m_ptScroll.y, TRUE);
  // At the top left corner the page stays where it was, and what is uncovered is invalid already.
  if (m_ptScroll.x != 0 || m_ptScroll.y != 0) InvalidateRect(nullptr, FALSE);
}

void CImageWindow::ScrollBy(int bar, UINT code, UINT* position) {
  const bool horizontal = bar == SB_HORZ;
  LONG& current = horizontal ? m_ptScroll.x : m_ptScroll.y;
  const int largest = horizontal ? m_ptScrollMax.x : m_ptScrollMax.y;
  int barPosition = 0;
  if (viewport::IsThumb(static_cast<int>(code))) {
    // The bar knows the thumb's place in full; a message holds 16 bits of it.
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    GetScrollInfo(bar, &info, SIF_ALL);
    barPosition = info.nTrackPos;
    *position = static_cast<UINT>(barPosition);
    current = viewport::Limit(barPosition, largest);
  } else {
    const int client = horizontal ? m_szClient.cx : m_szClient.cy;
    const int step = viewport::StepOf(static_cast<int>(code), {current, largest, client});
    if (step == 0) return;
    current = viewport::Limit(std::int64_t{current} + step, largest);
    barPosition = current;
  }
  CWnd::SetScrollPos(bar, barPosition, TRUE);
  InvalidateRect(nullptr, FALSE);
}

void CImageWindow::OnHScroll(UINT code, UINT position, CScrollBar* bar) {
  ScrollBy(SB_HORZ, code, &position);
  CWnd::OnHScroll(code, position, bar);
}

void CImageWindow::OnVScroll(UINT code, UINT position, CScrollBar* bar) {
  ScrollBy(SB_VERT, code, &position);
  CWnd::OnVScroll(code, position, bar);
}
