#include "thumbs/thumbs_window.h"

#include <memory>

#include "imaging/ltwrap.h"
#include "library/failure.h"
#include "library/resource_ids.h"
#include "thumbs/page_picture.h"
#include "thumbs/strip_items.h"
#include "thumbs/thumb_caption.h"
#include "thumbs/thumb_size.h"

IMPLEMENT_DYNCREATE(CThumbsWindow, CWnd)

namespace {

constexpr UINT kShowItem = WM_USER + 17;
constexpr int kGrayDepth = 8;
constexpr unsigned kScaleGray = 2;    // of SizeBitmapExt, for a page that was bilevel
constexpr unsigned kMadeAtOnce = 50;  // pages of a file; more take a time that one notices
constexpr auto kAppend = static_cast<unsigned>(-1);

// In English, whatever the texts of the library are: so it has always been for images in memory.
CString CaptionOfMemoryPage(int page) {
  CString caption;
  caption.Format("Page %d", page);
  return caption;
}

void ShrinkPage(struct_LEAD_Bitmap* page) {
  const bool bilevel = page->BitsPerPixel == 1;
  if (bilevel) LEADTOOLS::GrayScaleBitmap(page, kGrayDepth);
  const CSize size = thumbs::StripSize(CSize(page->Width, page->Height));
  LEADTOOLS::SizeBitmapExt(page, size.cx, size.cy, bilevel ? kScaleGray : 0);
}

void MakeCrossedBox(struct_LEAD_Bitmap* picture) {
  thumbs::DrawCrossedBox(picture, {thumbs::kLandscapeWidth, thumbs::kPortraitHeight});
}

}  // namespace

CThumbsWindow::~CThumbsWindow() {
  if (m_pBitmapList != nullptr) LEADTOOLS::DestroyBitmapList(m_pBitmapList);
}

BOOL CThumbsWindow::Create(LPCTSTR, LPCTSTR title, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                           void* context) {
  LEADTOOLS::UseImageListControl();
  if (CWnd::Create("LEADIMGLIST32", title, style, rect, parent, id, context) == FALSE) return FALSE;
  thumbs::PrepareStrip(m_hWnd);
  return TRUE;
}

void CThumbsWindow::Clear() {
  LEADTOOLS::ImgListClear(m_hWnd);
  if (m_pBitmapList == nullptr) return;
  LEADTOOLS::DestroyBitmapList(m_pBitmapList);
  m_pBitmapList = nullptr;
}

void CThumbsWindow::CreateThumbsFile(const char* path) {
  try {
    Clear();
    LEADTOOLS::LoadBitmapList(const_cast<char*>(path), &m_pBitmapList, 0, 1, nullptr, nullptr);
    if (Count() > kMadeAtOnce) return InsertItemsUnmade();
    LEADTOOLS::PrepareBitmapListPages(m_pBitmapList, {thumbs::kLandscapeWidth, nullptr, nullptr});
    CreateThumbnails();
    InsertItems(&thumbs::CaptionOfPage);
  } catch (CLeadtoolsException* exception) {
    ShowFailure(exception);
  }
}

void CThumbsWindow::CreateThumbsMemory(char* block, int size) {
  try {
    Clear();
    const auto take = [](struct_LEAD_Bitmap* page, void* window) {
      static_cast<CThumbsWindow*>(window)->AddShrunk(page);
    };
    LEADTOOLS::LoadSmallPagesMemory(block, size, thumbs::kLandscapeWidth, take, this);
    InsertItems(&CaptionOfMemoryPage);
  } catch (CLeadtoolsException* exception) {
    ShowFailure(exception);
  }
}

/// At once, so that one page is held at full size.
void CThumbsWindow::AddShrunk(struct_LEAD_Bitmap* page) {
  if (m_pBitmapList == nullptr) LEADTOOLS::CreateBitmapList(&m_pBitmapList);
  LEADTOOLS::InsertBitmapListItem(m_pBitmapList, kAppend, page);
  Shrink(Count() - 1);
}

void CThumbsWindow::Shrink(unsigned index) {
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::GetBitmapListItem(m_pBitmapList, index, &bitmap);
  ShrinkPage(&bitmap);
  LEADTOOLS::SetBitmapListItem(m_pBitmapList, index, &bitmap);
}

void CThumbsWindow::InsertItemsUnmade() {
  LEADTOOLS::PrepareBitmapListPages(m_pBitmapList, {thumbs::kLandscapeWidth, &ShrinkPage, &MakeCrossedBox});
  LEADTOOLS::ImgListInsertList(m_hWnd, m_pBitmapList, &thumbs::CaptionOfPage);
  thumbs::SelectAlone(m_hWnd, 0);
}

unsigned CThumbsWindow::Count() const {
  unsigned count = 0;
  LEADTOOLS::GetBitmapListCount(m_pBitmapList, &count);
  return count;
}

void CThumbsWindow::CreateThumbnails() {
  const unsigned count = Count();
  for (unsigned i = 0; i < count; ++i) Shrink(i);
}

void CThumbsWindow::InsertItems(CString (*caption)(int page)) {
  const unsigned count = Count();
  for (unsigned i = 0; i < count; ++i) {
    struct_LEAD_Bitmap bitmap{};
    LEADTOOLS::GetBitmapListItem(m_pBitmapList, i, &bitmap);
    thumbs::Append(m_hWnd, &bitmap, caption(static_cast<int>(i) + 1));
  }
  thumbs::SelectAlone(m_hWnd, 0);
}

void CThumbsWindow::SetSel(int page) {
  if (m_pBitmapList == nullptr) return;
  // The items count, not the pictures: a failure may have left pictures without items.
  if (page < 1 || page > LEADTOOLS::ImgListGetItemCount(m_hWnd)) return;
  thumbs::SelectAlone(m_hWnd, page - 1);
  SendMessage(kShowItem, static_cast<WPARAM>(page - 1));
}

void CThumbsWindow::ShowFailure(CLeadtoolsException* exception) {
  CString text = TakeFailure(exception).text;
  if (text.IsEmpty() != FALSE) text.LoadString(IDS_ZP_NO_DETAILS);
  MessageBox(text, "Error", 0);
}
