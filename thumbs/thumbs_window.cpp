#include "thumbs/thumbs_window.h"

#include <memory>

#include "imaging/ltwrap.h"
#include "library/failure.h"
#include "library/resource_ids.h"
#include "platform/framework/object_hold.h"
#include "thumbs/page_picture.h"
#include "thumbs/strip_items.h"
#include "thumbs/thumb_caption.h"
#include "thumbs/thumb_size.h"
#include "viewing/long_command.h"

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

/// While it lives, a strip is being made.
class Making {
 public:
  explicit Making(bool& flag) : m_flag(flag) { m_flag = true; }
  ~Making() { m_flag = false; }
  Making(const Making&) = delete;
  Making& operator=(const Making&) = delete;

 private:
  bool& m_flag;
};

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
  if (m_bMaking) return;
  const platform::ObjectHold hold(this);
  const Making making(m_bMaking);
  try {
    Clear();
    LEADTOOLS::LoadBitmapList(const_cast<char*>(path), &m_pBitmapList, 0, 1, nullptr, nullptr);
    if (Count() > kMadeAtOnce) return InsertItemsUnmade();
    LEADTOOLS::PrepareBitmapListPages(m_pBitmapList, {thumbs::kLandscapeWidth, nullptr, nullptr});
    const bool made = CreateThumbnails();
    if (m_hWnd == nullptr) return;
    if (made)
      InsertItems(&thumbs::CaptionOfPage);
    else
      InsertItemsUnmade();
  } catch (CLeadtoolsException* exception) {
    ShowFailure(exception);
  }
}

void CThumbsWindow::CreateThumbsMemory(char* block, int size) {
  if (m_bMaking) return;
  const platform::ObjectHold hold(this);
  const Making making(m_bMaking);
  try {
    Clear();
    ReadPages(block, size);
    if (m_hWnd != nullptr) InsertItems(&CaptionOfMemoryPage);
  } catch (CLeadtoolsException* exception) {
    ShowFailure(exception);
  }
}

void CThumbsWindow::ReadPages(char* block, int size) {
  const auto take = [](struct_LEAD_Bitmap* page, void* window) {
    static_cast<CThumbsWindow*>(window)->AddShrunk(page);
  };
  const LongCommand command(this, IDS_ZP_STRIP_PAGE);
  try {
    LEADTOOLS::LoadSmallPagesMemory(block, size, thumbs::kLandscapeWidth, take, this);
  } catch (CLeadtoolsException* exception) {
    if (!command.IsStopped() || m_pBitmapList == nullptr) throw;
    exception->Delete();  // those that there are will do
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

bool CThumbsWindow::CreateThumbnails() {
  const unsigned count = Count();
  LongCommand command(this, IDS_ZP_STRIP_PAGE);
  try {
    for (unsigned i = 0; i < count; ++i) {
      if (!command.Reach(static_cast<int>(i) + 1, static_cast<int>(count))) return false;
      Shrink(i);
    }
  } catch (CLeadtoolsException* exception) {
    if (!command.IsStopped()) throw;
    exception->Delete();
    return false;
  }
  return m_hWnd != nullptr;
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
  const Failure failure = TakeFailure(exception);
  if (failure.code == imaging::kErrorUserAbort) return;
  CString text = failure.text;
  if (text.IsEmpty() != FALSE) text.LoadString(IDS_ZP_NO_DETAILS);
  MessageBox(text, "Error", 0);
}
