#include "docview/zp_view.h"

#include "docview/zp_doc.h"
#include "library/failure.h"
#include "library/resource_ids.h"
#include "viewing/crossed_box.h"
#include "viewing/page_input.h"
#include "viewing/page_paint.h"
#include "viewing/saved_scale.h"
#include "viewing/window_parts.h"

IMPLEMENT_DYNCREATE(CZPView, CView)

BEGIN_MESSAGE_MAP(CZPView, CView)
ON_WM_SIZE()
ON_WM_CREATE()
ON_WM_HSCROLL()
ON_WM_VSCROLL()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_MOUSEMOVE()
ON_WM_SETCURSOR()
ON_WM_KEYDOWN()
ON_WM_KEYUP()
ON_WM_CONTEXTMENU()
ON_WM_MOUSEWHEEL()
END_MESSAGE_MAP()

// Creation

CZPView::CZPView() : m_dScaleFactor(saved_scale::Factor()) {
  try {
    LEADTOOLS::InitBitmap(&m_SmartBitmap, 0, 0, 1);
  } catch (CLeadtoolsException* exception) {
    ReportFailure(exception);
  }
}

CZPView::~CZPView() {
  FreeSmartBitmap();
}

BOOL CZPView::PreCreateWindow(CREATESTRUCT& cs) {
  if (CView::PreCreateWindow(cs) == FALSE) return FALSE;
  cs.lpszClass = window_parts::WindowClass();
  return TRUE;
}

int CZPView::OnCreate(LPCREATESTRUCT cs) {
  if (CView::OnCreate(cs) == -1) return -1;
  window_parts::AddScrollBars(*this);
  return 0;
}

void CZPView::OnInitialUpdate() {
  // Nothing: the first page comes with the hint of the document's open.
}

// Page

CZPDoc* CZPView::Document() const {
  return dynamic_cast<CZPDoc*>(GetDocument());
}

CSize CZPView::PageSize() const {
  return m_pBitmap != nullptr ? CSize(m_pBitmap->Width, m_pBitmap->Height) : CSize();
}

bool CZPView::IsReduced() const {
  return m_pBitmap != nullptr && view::IsReduced(m_nZoomDivisor, m_pBitmap->BitsPerPixel);
}

void CZPView::FreeSmartBitmap() {
  if ((m_SmartBitmap.Flags & leadtools12::kAllocated) != 0) LEADTOOLS::FreeBitmap(&m_SmartBitmap);
}

void CZPView::ForgetBitmap() {
  m_pBitmap = nullptr;
  FreeSmartBitmap();
}

void CZPView::OnUpdate(CView*, LPARAM hint, CObject* hintObject) {
  CZPDoc* const document = Document();
  const auto page = static_cast<int>(reinterpret_cast<std::intptr_t>(hintObject));
  const int active = document != nullptr ? document->GetActivePageNum() : view::kActivePage;
  if (!view::ConcernsActivePage(static_cast<int>(hint), page, active)) return;
  FreeSmartBitmap();
  m_pBitmap = document != nullptr ? document->GetHBitmap(view::kActivePage) : nullptr;
  if (m_pBitmap == nullptr) {
    InvalidateRect(nullptr, FALSE);
    UpdateScroll();
    return;
  }
  if (m_nFitMode == 0) {
    if (!saved_scale::IsLegal(m_dScaleFactor)) m_dScaleFactor = saved_scale::kDefaultFactor;
    ZoomToScaleFactor(m_dScaleFactor);
  } else {
    ZoomToFitMode();
  }
  UpdateZoomStatus();
  UpdateScroll();
  SetScrollPos(CPoint(0, 0), TRUE);
}

void CZPView::DoSmartResizing() {
  try {
    FreeSmartBitmap();
    LEADTOOLS::SmartResize(m_pBitmap, &m_SmartBitmap, 1.0 / m_nZoomDivisor);
  } catch (CLeadtoolsException* exception) {
    ReportFailure(exception);
  }
}

int CZPView::GetWidthBytes(int bits) {
  return window_parts::WidthBytes(bits);
}

// Painting

void CZPView::OnDraw(CDC* dc) {
  if (DisplayBmp(dc) == 0) {
    const CZPDoc* const document = Document();
    if (document == nullptr || document->GetPagesNum() == 0)
      window_parts::FillGray(*this, *dc);
    else
      DrawNoPage(dc);
  }
  // Another device context than the window's never had the frame of a selection.
  if (dynamic_cast<CPaintDC*>(dc) != nullptr) PageInput(*this).RestoreBand(dc);
}

int CZPView::DisplayBmp(CDC* dc) {
  if (m_pBitmap == nullptr) return 0;
  const bool reduced = IsReduced() && ShowsReducedCopy(dc->m_hDC, m_SmartBitmap);
  auto* const paint = dynamic_cast<CPaintDC*>(dc);
  try {
    PaintPage(dc->m_hDC, reduced ? &m_SmartBitmap : m_pBitmap, m_ptScroll, m_szScaled,
              paint != nullptr ? &paint->m_ps.rcPaint : nullptr);
  } catch (CLeadtoolsException* exception) {
    ReportFailure(exception);
    return 0;
  }
  return 1;
}

void CZPView::DrawNoPage(CDC* dc) {
  constexpr auto kGray = static_cast<COLORREF>(crossed_box::kColour);
  CRect client;
  GetClientRect(client);
  dc->DPtoLP(static_cast<LPRECT>(client));
  dc->FillSolidRect(0, 0, client.Width(), client.Height(), kGray);
  for (const auto& line : crossed_box::Cross(client.Size())) {
    dc->MoveTo(line.from);
    dc->LineTo(line.to);
  }
  CString text;
  text.LoadString(IDS_ZP_PAGE_UNSUPPORTED);
  const COLORREF former = dc->SetBkColor(kGray);
  CRect measured = client;
  const int height = dc->DrawText(text, measured, DT_CALCRECT | DT_WORDBREAK | DT_CENTER);
  CRect place = view::TextRect(client.Size(), height);
  dc->DrawText(text, place, DT_WORDBREAK | DT_CENTER);
  dc->SetBkColor(former);
}
