#include "docview/zp_thumbs_view.h"

#include "docview/hints.h"
#include "docview/zp_doc.h"
#include "library/failure.h"
#include "library/resource_ids.h"
#include "platform/framework/object_hold.h"
#include "thumbs/page_picture.h"
#include "thumbs/strip_items.h"
#include "thumbs/thumb_caption.h"
#include "viewing/long_command.h"

IMPLEMENT_DYNCREATE(CZPThumbsView, CView)

BEGIN_MESSAGE_MAP(CZPThumbsView, CView)
ON_WM_CREATE()
ON_WM_PAINT()
END_MESSAGE_MAP()

namespace {

/// Tells the document at its end that a page's bitmap isn't needed any more. For a host's kind of page, which
/// may hold its pixels only while they are in use.
class UseOfPage {
 public:
  UseOfPage(CZPDoc& document, int page) : m_document(document), m_page(page) {}
  UseOfPage(const UseOfPage&) = delete;
  UseOfPage& operator=(const UseOfPage&) = delete;
  ~UseOfPage() { m_document.ReleaseHBitmap(m_page); }

 private:
  CZPDoc& m_document;
  int m_page;
};

}  // namespace

// Window

BOOL CZPThumbsView::PreCreateWindow(CREATESTRUCT& cs) {
  if (CView::PreCreateWindow(cs) == 0) return 0;
  LEADTOOLS::UseImageListControl();
  cs.lpszClass = "LEADIMGLIST32";
  return 1;
}

int CZPThumbsView::OnCreate(LPCREATESTRUCT cs) {
  if (CView::OnCreate(cs) == -1) return -1;
  thumbs::SetCells(m_hWnd, {m_nThumbWidth, m_nThumbHeight});
  thumbs::PrepareStrip(m_hWnd);
  return 0;
}

void CZPThumbsView::OnPaint() {
  Default();
}

// Hints

void CZPThumbsView::OnUpdate(CView*, LPARAM lHint, CObject* pHint) {
  switch (lHint) {
    case view::kHintAllPages:
      CreateThumbsList();
      break;
    case view::kHintPageChanged:
      UpdatePageModification(view::PageOfHint(pHint));
      break;
    case view::kHintOtherPage:
      ChangeSelPage();
      break;
    default:
      break;
  }
}

CZPDoc* CZPThumbsView::Document() const {
  return dynamic_cast<CZPDoc*>(GetDocument());
}

int CZPThumbsView::ActivePage() const {
  const CZPDoc* const document = Document();
  return document == nullptr ? -1 : document->GetActivePageNum();
}

// Pictures

void CZPThumbsView::CreateThumbsList() {
  try {
    LEADTOOLS::ImgListClear(m_hWnd);
    CZPDoc* const document = Document();
    const platform::ObjectHold holdView(this);
    const platform::ObjectHold hold(document);
    const int pages = document == nullptr ? 0 : document->GetPagesNum();
    if (pages == 0) return;
    const unsigned filling = ++m_nFillings;
    LongCommand command(this, IDS_ZP_STRIP_PAGE);
    for (int i = 0; i < pages; ++i) {
      command.Reach(i + 1, pages);
      // A handler of the host may have ended the view or the document, or shown other pages.
      if (!hold.Exists() || m_hWnd == nullptr || filling != m_nFillings) return;
      InsertPage(*document, i);
    }
    ChangeSelPage();
  } catch (CLeadtoolsException* exception) {
    ReportFailure(exception);
  }
}

void CZPThumbsView::InsertPage(CZPDoc& document, int nPage) {
  const UseOfPage use(document, nPage);
  thumbs::PagePicture picture;
  struct_LEAD_Bitmap* const page = document.GetHBitmap(nPage);
  if (page != nullptr)
    picture.MakeOfCopy(*page, PictureRoom());
  else
    picture.MakeCrossedBox(PictureRoom());
  thumbs::Append(m_hWnd, picture.Bitmap(), thumbs::CaptionOfPage(nPage + 1));
}

void CZPThumbsView::UpdatePageModification(int nPage) {
  try {
    CZPDoc* const document = Document();
    if (document == nullptr) return;
    const platform::ObjectHold hold(document);
    if (nPage == view::kActivePage) nPage = document->GetActivePageNum();
    struct_LEAD_Bitmap* const page = document->GetHBitmap(nPage);
    if (page == nullptr) return;
    const UseOfPage use(*document, nPage);
    thumbs::PagePicture picture;
    picture.MakeScaled(*page, PictureRoom());
    thumbs::SetPicture(m_hWnd, nPage, picture.Bitmap());
  } catch (CLeadtoolsException* exception) {
    ReportFailure(exception);
  }
}

// Selection

void CZPThumbsView::ChangeSelPage() {
  try {
    // Without an active page, and for a page whose item a failure has left out, nothing is selected.
    const int page = ActivePage();
    if (thumbs::SelectAlone(m_hWnd, page)) EnsureVisible(page);
  } catch (CLeadtoolsException* exception) {
    ReportFailure(exception);
  }
}

void CZPThumbsView::EnsureVisible(int nIndex) {
  try {
    const thumbs::Screenfuls at{LEADTOOLS::ImgListGetItemCount(m_hWnd),
                                LEADTOOLS::ImgListGetPagesCount(m_hWnd), LEADTOOLS::ImgListGetPage(m_hWnd)};
    if (!thumbs::IsInView(nIndex, at)) LEADTOOLS::ImgListEnsureVisible(m_hWnd, nIndex);
  } catch (CLeadtoolsException* exception) {
    exception->Delete();  // an item that isn't seen at once is no failure of what the user wanted
  }
}
