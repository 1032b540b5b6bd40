#include "viewer_page.h"

#include <algorithm>
#include <vector>

#include "viewer_window.h"

IMPLEMENT_DYNCREATE(CViewerPage, CImageWindow)

BEGIN_MESSAGE_MAP(CViewerPage, CImageWindow)
ON_WM_KEYDOWN()
ON_WM_LBUTTONDOWN()
ON_WM_MOUSEMOVE()
ON_WM_LBUTTONUP()
ON_WM_CAPTURECHANGED()
ON_WM_SETCURSOR()
ON_WM_PAINT()
ON_WM_SIZE()
ON_WM_DROPFILES()
END_MESSAGE_MAP()

// Pages

bool CViewerPage::LoadPage(int page) {
  m_selection = CRect();
  if (!CImageWindow::LoadPage(page) || m_hWnd == nullptr) return false;
  FitAgain();
  return true;
}

void CViewerPage::KeepFit(int mode) {
  m_nFitMode = mode;
  FitAgain();
}

void CViewerPage::FitAgain() {
  if (m_nFitMode == FitModeNone || m_fitting || !HasPicture()) return;
  m_fitting = true;  // the bars that come and go change the size
  FitUntilSettled();
  m_fitting = false;
  UpdateZoomStatus();
}

void CViewerPage::OnSize(UINT type, int cx, int cy) {
  CImageWindow::OnSize(type, cx, cy);
  // A scroll bar that comes takes from the client area alone: the user has enlarged the page.
  CRect place;
  GetWindowRect(place);
  if (place.Size() == m_size) return;
  m_size = place.Size();
  FitAgain();
}

// Keys

/// At the end of the page, in the key's direction, and there is another one.
bool CViewerPage::TurnsPage(UINT key) const {
  if (!m_turnsAtEnd || GetKeyState(VK_CONTROL) < 0 || GetKeyState(VK_SHIFT) < 0) return false;
  if (key == VK_NEXT) return m_nCurrPage < m_nMaxPage && m_ptScroll.y >= m_ptScrollMax.y;
  return key == VK_PRIOR && m_nCurrPage > 1 && m_ptScroll.y <= 0;
}

void CViewerPage::OnKeyDown(UINT key, UINT repeat, UINT flags) {
  if (!TurnsPage(key)) {
    CImageWindow::OnKeyDown(key, repeat, flags);
    return;
  }
  GetParentFrame()->SendMessage(WM_COMMAND, key == VK_NEXT ? ID_ZP_NEXT_PAGE : ID_ZP_PREV_PAGE);
  // One reads backwards from the foot of the page.
  if (m_hWnd != nullptr && key == VK_PRIOR) GoTo(CPoint(m_ptScroll.x, m_ptScrollMax.y));
}

// Selection

CRect CViewerPage::SelectedPart() const {
  return HasPicture() && m_selectedTurn == m_nRotation ? m_selection : CRect();
}

void CViewerPage::ArmSelection() {
  if (m_bZoomSelect) ToggleZoomSelect();
  m_armed = true;
  SetCursor(LoadCursor(nullptr, IDC_CROSS));
}

bool CViewerPage::ClearSelection() {
  const bool had = m_armed || SelectedPart().IsRectEmpty() == FALSE;
  m_armed = false;
  m_selecting = false;
  m_selection = CRect();
  if (GetCapture() == this) ReleaseCapture();
  Invalidate(FALSE);
  return had;
}

CPoint CViewerPage::PixelAt(CPoint point) const {
  const CPoint pixel = mouse::PagePixelAt(point, m_ptScroll, m_dScaleFactor);
  return {std::clamp<int>(pixel.x, 0, m_Bitmap.Width), std::clamp<int>(pixel.y, 0, m_Bitmap.Height)};
}

void CViewerPage::SelectTo(CPoint point) {
  m_selection = mouse::SelectionRect(m_selectionStart, PixelAt(point));
  Invalidate(FALSE);
}

void CViewerPage::OnLButtonDown(UINT flags, CPoint point) {
  const bool byShift = (flags & MK_SHIFT) != 0 && GetMouseMode() == MouseModeDrag && !m_bZoomSelect;
  if (!HasPicture() || (!m_armed && !byShift)) {
    CImageWindow::OnLButtonDown(flags, point);
    return;
  }
  SetFocus();
  SetCapture();
  m_selecting = true;
  m_selectedTurn = m_nRotation;
  m_selectionStart = PixelAt(point);
  SelectTo(point);
}

void CViewerPage::OnMouseMove(UINT flags, CPoint point) {
  if (m_selecting)
    SelectTo(point);
  else
    CImageWindow::OnMouseMove(flags, point);
}

void CViewerPage::OnLButtonUp(UINT flags, CPoint point) {
  if (!m_selecting) {
    CImageWindow::OnLButtonUp(flags, point);
    return;
  }
  SelectTo(point);
  m_armed = false;
  m_selecting = false;
  ReleaseCapture();
  if (m_selection.IsRectEmpty() != FALSE) ClearSelection();  // a click
}

void CViewerPage::OnCaptureChanged(CWnd* window) {
  m_selecting = false;
  CImageWindow::OnCaptureChanged(window);
}

BOOL CViewerPage::OnSetCursor(CWnd* window, UINT hitTest, UINT message) {
  if (!m_armed || hitTest != HTCLIENT) return CImageWindow::OnSetCursor(window, hitTest, message);
  SetCursor(LoadCursor(nullptr, IDC_CROSS));
  return TRUE;
}

void CViewerPage::OnPaint() {
  CImageWindow::OnPaint();
  if (m_hWnd != nullptr) DrawSelection();
}

/// Solid lines, which come out the same wherever they were drawn before.
void CViewerPage::DrawSelection() {
  const CRect part = SelectedPart();
  if (part.IsRectEmpty() != FALSE && !m_selecting) return;
  constexpr COLORREF kBlue = RGB(0, 90, 200);
  constexpr int kLine = 2;
  const auto toWindow = [this](LONG pixel, LONG scroll) {
    return static_cast<int>(static_cast<double>(pixel) * m_dScaleFactor) - static_cast<int>(scroll);
  };
  const int left = toWindow(part.left, m_ptScroll.x);
  const int top = toWindow(part.top, m_ptScroll.y);
  const int right = toWindow(part.right, m_ptScroll.x);
  const int bottom = toWindow(part.bottom, m_ptScroll.y);
  CClientDC dc(this);
  dc.FillSolidRect(left, top, right - left, kLine, kBlue);
  dc.FillSolidRect(left, bottom - kLine, right - left, kLine, kBlue);
  dc.FillSolidRect(left, top, kLine, bottom - top, kBlue);
  dc.FillSolidRect(right - kLine, top, kLine, bottom - top, kBlue);
}

// Drops

void CViewerPage::OnDropFiles(HDROP drop) {
  constexpr UINT kCount = 0xFFFFFFFF;
  std::vector<std::string> paths(DragQueryFileA(drop, kCount, nullptr, 0));
  for (UINT i = 0; i < paths.size(); ++i) {
    std::vector<char> path(DragQueryFileA(drop, i, nullptr, 0) + 1);
    DragQueryFileA(drop, i, path.data(), static_cast<UINT>(path.size()));
    paths[i] = path.data();
  }
  Default();
  static_cast<CViewerWindow*>(GetParentFrame())->OpenDroppedFiles(paths);
}
