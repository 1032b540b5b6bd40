#include "docview/zp_doc.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "docview/bitmap_borrower.h"
#include "docview/document_frame.h"
#include "docview/hints.h"
#include "library/failure.h"
#include "library/resource_ids.h"
#include "platform/framework/doc_template.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/object_hold.h"
#include "platform/framework/thread.h"
#include "platform/framework/view.h"
#include "platform/window/pump.h"
#include "print/print_command.h"
#include "viewing/long_command.h"
#include "viewing/page_source.h"

namespace {

constexpr int kRemembered = 1;

using Clock = std::chrono::steady_clock;
/// How long an open goes on before it shows the pages that it has, and until it shows further ones.
constexpr std::chrono::milliseconds kPatience(200);

void ShowOpening() {
  CWnd* const main = AfxGetMainWnd();
  if (main == nullptr) return;
  main->SendMessage(WM_SETMESSAGESTRING, IDS_ZP_OPENING, 0);
  PaintWhileBusy();
}

/// Throws also if there is no first page.
int CountPages(const PageSource& source) {
  const int pages = source.CountPages();
  _LOADFILEOPTION options{};
  LEADTOOLS::GetDefaultLoadFileOption(&options);
  options.PageNumber = 1;
  struct_file_information first{};
  source.Describe(&first, &options);
  return pages;
}

}  // namespace

IMPLEMENT_DYNCREATE(CZPDoc, CDocument)

BEGIN_MESSAGE_MAP(CZPDoc, CDocument)
END_MESSAGE_MAP()

CZPDoc::~CZPDoc() {
  DeletePages();
}

// Opening

BOOL CZPDoc::OnNewDocument() {
  return CDocument::OnNewDocument() != 0 ? 1 : 0;
}

BOOL CZPDoc::OnSaveDocument(LPCTSTR) {
  return 0;
}

BOOL CZPDoc::OnOpenDocument(LPCTSTR pszPath) {
  const platform::ObjectHold hold(this);
  const CString path(pszPath);  // the caller's text may be the document's own path
  ShowOpening();
  DeletePages();
  const LongCommand command(AfxGetMainWnd(), IDS_ZP_OPENING_PAGE);
  const JobWatch<CZPDoc> watch(*this);
  int pages = 0;
  try {
    pages = CountPages(PageSource::File(path));
  } catch (CLeadtoolsException* exception) {
    if (watch.Get() != nullptr) return FailOpen(exception);
    exception->Delete();
  }
  if (watch.Get() == nullptr) return 0;
  SetPathName(path, TRUE);
  return LoadPages(
      pages, [&path](CZPPage& page, int number) { return page.LoadPage(path, number, nullptr, nullptr); });
}

int CZPDoc::OpenDocumentMemory(BYTE* pBuffer, DWORD dwSize) {
  const platform::ObjectHold hold(this);
  ShowOpening();
  const LongCommand command(AfxGetMainWnd(), IDS_ZP_OPENING_PAGE);
  int pages = 0;
  try {
    pages = CountPages(PageSource::Memory(pBuffer, static_cast<long>(dwSize)));
  } catch (CLeadtoolsException* exception) {
    // With no active page there is nothing that the views could show of what was open, and a strip of pages
    // that can't be reached would only mislead.
    DeletePages();
    return FailOpen(exception);
  }
  m_strPathName.Empty();
  SetTitle(nullptr);
  DeletePages();
  return LoadPages(pages, [pBuffer, dwSize](CZPPage& page, int number) {
    return page.LoadPage(pBuffer, dwSize, number, nullptr, nullptr);
  });
}

/// A page whose load is on the stack. If the document gives the page up meanwhile it ends with this.
class CZPDoc::PageInLoad {
 public:
  explicit PageInLoad(CZPPage& page) : m_page(&page), m_outer(std::exchange(s_innermost, this)) {}
  PageInLoad(const PageInLoad&) = delete;
  PageInLoad& operator=(const PageInLoad&) = delete;
  ~PageInLoad() {
    s_innermost = m_outer;
    if (m_isGivenUp) delete m_page;
  }
  static bool TakesOver(const CZPPage* page) {
    PageInLoad* load = s_innermost;
    while (load != nullptr && load->m_page != page) load = load->m_outer;
    if (load != nullptr) load->m_isGivenUp = true;
    return load != nullptr;
  }

 private:
  CZPPage* m_page;
  PageInLoad* m_outer;
  bool m_isGivenUp = false;
  static inline PageInLoad* s_innermost = nullptr;
};

template <class LoadPage>
int CZPDoc::LoadPages(int nCount, const LoadPage& loadPage) {
  const JobWatch<CZPDoc> watch(*this);
  LongCommand command(AfxGetMainWnd(), IDS_ZP_OPENING_PAGE);
  m_arrPages.SetSize(std::max(nCount, 0));
  for (int i = 0; i < m_arrPages.GetSize(); ++i) m_arrPages[i] = CreatePage();
  int loaded = 0;
  int shown = 0;  // pages that the views know of
  auto look = Clock::now() + kPatience;
  // A handler of the host, or its answer to a new size, may end this document, or open another source in it.
  for (int i = 0; i < nCount && command.Reach(i + 1, nCount); ++i) {
    if (watch.Get() == nullptr) return 0;
    CZPPage* const page = PageAt(i);
    if (page != nullptr) {
      const PageInLoad inLoad(*page);
      loaded |= loadPage(*page, i);
    }
    if (watch.Get() == nullptr) return 0;
    if (loaded == 0 || Clock::now() < look) continue;
    ShowSoFar(shown, i + 1);
    if (watch.Get() == nullptr) return 0;
    shown = i + 1;
    look = Clock::now() + kPatience;
  }
  if (watch.Get() == nullptr) return 0;
  ShowOpened(0);
  if (loaded != 0) return 1;
  ReportNoPage();
  return 0;
}

/// A window in which nothing can be seen, or which goes again, must not leave the user without a reason.
void CZPDoc::ReportNoPage() const {
  const CZPPage* const first = PageAt(0);
  if (first == nullptr) return;
  const int code = first->m_nFailure;
  CString text = first->m_strFailure;
  if (text.IsEmpty() != FALSE) text.LoadString(IDS_ZP_PAGE_UNSUPPORTED);  // a host's own kind of page
  ReportError(code, text);
}

/// Path and title of a document that has never held anything, so that the former file can be opened again.
void CZPDoc::BecomeEmpty() {
  m_strPathName.Empty();
  if (CDocTemplate* const kind = GetDocTemplate())
    kind->SetDefaultTitle(this);
  else
    SetTitle(nullptr);
}

void CZPDoc::ShowSoFar(int nFirst, int nEnd) {
  if (nFirst == 0) {
    m_nActivePage = 0;
    TellViews(view::kHintAllPages);
  } else {
    for (int i = nFirst; i < nEnd; ++i) TellViews(view::kHintPageChanged, i);
  }
  POSITION position = GetFirstViewPosition();
  const CView* const view = position == nullptr ? nullptr : GetNextView(position);
  CFrameWnd* const frame = view == nullptr ? nullptr : view->GetParentFrame();
  if (frame == nullptr) return;
  // A document window is shown by its template only at the end.
  if (m_bShowsFrame != FALSE && DYNAMIC_DOWNCAST(CMDIChildWnd, frame) != nullptr &&
      frame->IsWindowVisible() == FALSE) {
    frame->SetWindowText(m_strTitle);
    frame->ActivateFrame();
  }
  if (auto* const shown = dynamic_cast<CZPDocumentFrame*>(frame); shown != nullptr && nFirst == 0)
    shown->UpdateFrame();
  PaintWhileBusy();
}

void CZPDoc::TellViews(int nHint, int nPage) {
  UpdateAllViews(nullptr, nHint, nHint == view::kHintPageChanged ? view::HintOfPage(nPage) : nullptr);
}

int CZPDoc::FailOpen(CLeadtoolsException* pException) {
  BecomeEmpty();
  ReportFailure(pException);
  ShowOpened(-1);
  return 0;
}

void CZPDoc::ShowOpened(int nActivePage) {
  m_nActivePage = nActivePage;
  TellViews(view::kHintAllPages);
  InitialFrameUpdate();
}

void CZPDoc::InitialFrameUpdate() {
  POSITION position = GetFirstViewPosition();
  if (position == nullptr) return;
  const CView* const view = GetNextView(position);
  if (view == nullptr) return;
  auto* const frame = dynamic_cast<CZPDocumentFrame*>(view->GetParentFrame());
  if (frame != nullptr) frame->InitialFrameUpdate();
}

// Pages

CZPPage* CZPDoc::CreatePage() {
  return new CZPPage;
}

void CZPDoc::DeletePages() {
  StopPrinting();
  POSITION position = GetFirstViewPosition();
  while (position != nullptr) {
    auto* const view = dynamic_cast<CZPBitmapBorrower*>(GetNextView(position));
    if (view != nullptr) view->ForgetBitmap();
  }
  m_nActivePage = -1;
  CPtrArray pages;
  std::swap(pages, m_arrPages);
  for (int i = 0; i < pages.GetSize(); ++i) {
    auto* const page = static_cast<CZPPage*>(pages[i]);
    if (!PageInLoad::TakesOver(page)) delete page;
  }
}

CZPPage* CZPDoc::PageAt(int nPage) const {
  if (nPage < 0 || nPage >= m_arrPages.GetSize()) return nullptr;
  return static_cast<CZPPage*>(m_arrPages[nPage]);
}

CZPPage* CZPDoc::PageOrActive(int nPage) const {
  return PageAt(nPage == view::kActivePage ? m_nActivePage : nPage);
}

int CZPDoc::SetActivePage(int nPage) {
  if (nPage < 0 || nPage >= GetPagesNum()) return 0;
  const CWaitCursor wait;
  m_nActivePage = nPage;
  CZPPage* const page = PageAt(nPage);
  if (page != nullptr) page->Activate(1);
  TellViews(view::kHintOtherPage);
  return 1;
}

struct_LEAD_Bitmap* CZPDoc::GetHBitmap(int nPage) {
  CZPPage* const page = PageOrActive(nPage);
  return page == nullptr ? nullptr : page->GetHBitmap();
}

int CZPDoc::ReleaseHBitmap(int nPage) {
  if (nPage == m_nActivePage) return 0;
  CZPPage* const page = PageAt(nPage);
  return page == nullptr ? 0 : page->Activate(0);
}

int CZPDoc::Rotate(int nAngle) {
  CZPPage* const page = PageOrActive(view::kActivePage);
  if (page == nullptr || page->GetHBitmap() == nullptr) return 0;
  StopPrinting();  // the pixels move
  if (page->Rotate(nAngle, kRemembered) == 0) return 0;
  TellViews(view::kHintPageChanged);
  return 1;
}

int CZPDoc::GetPageFormat(int nPage) const {
  const CZPPage* const page = PageOrActive(nPage);
  return page == nullptr ? -1 : page->GetFormat();
}
