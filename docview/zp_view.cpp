#include "docview/zp_view.h"

#include "docview/document_frame.h"
#include "docview/hints.h"
#include "docview/zp_doc.h"
#include "library/failure.h"
#include "library/resource_ids.h"
#include "platform/framework/object_hold.h"
#include "viewing/accessible_page.h"
#include "viewing/crossed_box.h"
#include "viewing/detail/page_window_map.h"
#include "viewing/page_paint.h"
#include "viewing/saved_scale.h"

template class CPageWindow<CView>;

IMPLEMENT_DYNCREATE(CZPView, CView)

// Creation

CZPView::CZPView() : m_dScaleFactor(saved_scale::Factor()) {
  try {
    LEADTOOLS::InitBitmap(&m_SmartBitmap, 0, 0, 1);
  } catch (CLeadtoolsException* exception) {
    Report(exception);
  }
}

CZPView::~CZPView() {
  FreeSmartBitmap();
}

void CZPView::Report(CLeadtoolsException* exception) {
  ReportFailure(exception);
}

void CZPView::OnInitialUpdate() {
  // Nothing: the first page comes with the hint of the document's open.
}

// Page

CZPDoc* CZPView::Document() const {
  return dynamic_cast<CZPDoc*>(GetDocument());
}

void CZPView::ForgetBitmap() {
  BreakOff();
  m_pBitmap = nullptr;
  FreeSmartBitmap();
}

void CZPView::OnUpdate(CView*, LPARAM hint, CObject* hintObject) {
  CZPDoc* const document = Document();
  const auto page = view::PageOfHint(hintObject);
  const int active = document != nullptr ? document->GetActivePageNum() : view::kActivePage;
  if (!view::ConcernsActivePage(static_cast<int>(hint), page, active)) return;
  FreeSmartBitmap();
  m_pBitmap = document != nullptr ? document->GetHBitmap(view::kActivePage) : nullptr;
  if (m_pBitmap == nullptr) {
    InvalidateRect(nullptr, FALSE);
    UpdateScroll();
    return;
  }
  const platform::ObjectHold hold(this);  // a failure is told, and so is the scale
  if (m_nFitMode == 0) {
    if (!saved_scale::IsLegal(m_dScaleFactor)) m_dScaleFactor = saved_scale::kDefaultFactor;
    ZoomToScaleFactor(m_dScaleFactor);
  } else {
    FitUntilSettled();
  }
  if (hold.Exists()) UpdateZoomStatus();
  if (!hold.Exists()) return;
  UpdateScroll();
  SetScrollPos(CPoint(0, 0), TRUE);
}

void CZPView::DoSmartResizing() {
  try {
    FreeSmartBitmap();
    LEADTOOLS::SmartResize(m_pBitmap, &m_SmartBitmap, 1.0 / m_nZoomDivisor);
  } catch (CLeadtoolsException* exception) {
    Report(exception);
  }
}

// Scale, mouse

void CZPView::SetZoomedScrollPos(double oldFactor) {
  SetScrollPos(viewport::KeepingCentre(m_ptScroll, m_szClient, m_dScaleFactor / oldFactor), TRUE);
}

void CZPView::UpdateZoomStatus() {
  auto* const frame = dynamic_cast<CZPDocumentFrame*>(GetParentFrame());
  if (frame != nullptr) frame->UpdateZoomStatus();
}

int CZPView::SetMouseMode(int mode) {
  // A selection goes before any mode, and goes on.
  if (mode != m_nMouseMode && m_bZoomSelect == 0) BreakOff();
  m_nMouseMode = mode;
  POINT pointer;
  GetCursorPos(&pointer);
  ScreenToClient(&pointer);
  CRect client;
  GetClientRect(client);
  if (client.PtInRect(pointer) == FALSE) return 0;
  const bool in = mode == ViewMouseZoomIn;  // Shift counts from the next move on
  ShowModeCursor(in, IsStepPossible(in));
  return 1;
}

bool CZPView::IsStaleAfterResize(bool moved) const {
  const CZPDoc* const document = Document();
  return moved || (m_pBitmap == nullptr && document != nullptr && document->GetPagesNum() > 0);
}

// Painting

void CZPView::OnDraw(CDC* dc) {
  const platform::ObjectHold hold(this);  // a failure is told
  const bool drawn = DisplayBmp(dc) != 0;
  if (!hold.Exists()) return;
  if (!drawn) {
    const CZPDoc* const document = Document();
    if (document == nullptr || document->GetPagesNum() == 0)
      FillGray(*this, *dc);
    else
      DrawNoPage(dc);
  }
  // Another device context than the window's never had the frame of a selection.
  if (dynamic_cast<CPaintDC*>(dc) == nullptr) return;
  RestoreBand(dc);
  Describe();
}

void CZPView::Describe() {
  const CZPDoc* const document = Document();
  const bool open = document != nullptr && document->GetPagesNum() != 0;
  DescribePage(m_hWnd, open ? document->GetTitle() : CString(), open ? document->GetActivePageNum() + 1 : 0,
               open ? document->GetPagesNum() : 0, GetScalePercent());
}

int CZPView::DisplayBmp(CDC* dc) {
  const HDC handle = dc->m_hDC;
  auto* const paint = dynamic_cast<CPaintDC*>(dc);
  return PaintShown(handle, paint != nullptr ? &paint->m_ps.rcPaint : nullptr) ? 1 : 0;
}

void CZPView::DrawNoPage(CDC* dc) {
  constexpr auto kGray = static_cast<COLORREF>(crossed_box::kColour);
  CRect client;
  GetClientRect(client);
  dc->DPtoLP(static_cast<LPRECT>(client));
  dc->FillSolidRect(0, 0, client.Width(), client.Height(), kGray);
  for (const auto& line : crossed_box::Cross(client.Size(), client.Height() - 1)) {
    dc->MoveTo(line.from);
    dc->LineTo(line.to);
  }
  CString text;
  text.LoadString(IDS_ZP_PAGE_UNSUPPORTED);
  const COLORREF former = dc->SetBkColor(kGray);
  CRect measured = client;
  const int height = dc->DrawText(text, measured, DT_CALCRECT | DT_WORDBREAK | DT_CENTER);
  CRect place = crossed_box::TextRect(client.Size(), height);
  dc->DrawText(text, place, DT_WORDBREAK | DT_CENTER);
  dc->SetBkColor(former);
}
