#include "thumbs/thumbs_window.h"

#include <memory>

#include "imaging/ltwrap.h"
#include "library/resource_ids.h"
#include "thumbs/thumb_caption.h"
#include "thumbs/thumb_size.h"

IMPLEMENT_DYNCREATE(CThumbsWindow, CWnd)

namespace {

constexpr UINT kShowItem = WM_USER + 17;
constexpr UINT kSetStripColour = WM_USER + 21;
constexpr int kGrayDepth = 8;
constexpr unsigned kScaleGray = 2;  // of SizeBitmapExt, for a page that was bilevel
constexpr unsigned kCountPages = 1;
constexpr auto kAppend = static_cast<unsigned>(-1);
constexpr UINT kPicture = 1;
constexpr UINT kCaption = 2;
constexpr UINT kSelection = 8;

// In English, whatever the texts of the library are: so it has always been for images in memory.
CString CaptionOfMemoryPage(int page) {
  CString caption;
  caption.Format("Page %d", page);
  return caption;
}

}  // namespace

CThumbsWindow::~CThumbsWindow() {
  if (m_pBitmapList != nullptr) LEADTOOLS::DestroyBitmapList(m_pBitmapList);
}

BOOL CThumbsWindow::Create(LPCTSTR, LPCTSTR title, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                           void* context) {
  LEADTOOLS::UseImageListControl();
  if (CWnd::Create("LEADIMGLIST32", title, style, rect, parent, id, context) == FALSE) return FALSE;
  _LILSELOPTION selection{};
  LEADTOOLS::ImgListGetSelOptions(m_hWnd, &selection);
  selection.uStructSize = sizeof selection;
  selection.bSelectPicked = 1;
  selection.bSingle = 1;
  LEADTOOLS::ImgListSetSelOptions(m_hWnd, &selection);
  SendMessage(kSetStripColour, 0, static_cast<LPARAM>(GetSysColor(COLOR_INACTIVECAPTION)));
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
    CreateThumbnails();
    InsertItems(&thumbs::CaptionOfPage);
  } catch (CLeadtoolsException* exception) {
    ShowFailure(exception);
  }
}

void CThumbsWindow::CreateThumbsMemory(char* block, int size) {
  try {
    Clear();
    struct_file_information info{};
    LEADTOOLS::FileInfoMemory(block, &info, size, kCountPages, nullptr);
    LEADTOOLS::CreateBitmapList(&m_pBitmapList);
    _LOADFILEOPTION options{};
    LEADTOOLS::GetDefaultLoadFileOption(&options);
    for (int page = 1; page <= info.TotalPages; ++page) {
      options.PageNumber = page;
      struct_LEAD_Bitmap bitmap{};
      LEADTOOLS::LoadBitmapMemory(block, &bitmap, 0, 1, size, &options, nullptr);
      LEADTOOLS::InsertBitmapListItem(m_pBitmapList, kAppend, &bitmap);
      Shrink(static_cast<unsigned>(page - 1));  // at once, so that one page is held at full size
    }
    InsertItems(&CaptionOfMemoryPage);
  } catch (CLeadtoolsException* exception) {
    ShowFailure(exception);
  }
}

void CThumbsWindow::Shrink(unsigned index) {
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::GetBitmapListItem(m_pBitmapList, index, &bitmap);
  const bool bilevel = bitmap.BitsPerPixel == 1;
  if (bilevel) LEADTOOLS::GrayScaleBitmap(&bitmap, kGrayDepth);
  const CSize size = thumbs::StripSize(CSize(bitmap.Width, bitmap.Height));
  LEADTOOLS::SizeBitmapExt(&bitmap, size.cx, size.cy, bilevel ? kScaleGray : 0);
  LEADTOOLS::SetBitmapListItem(m_pBitmapList, index, &bitmap);
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
  _LILITEM item{};
  item.uStructSize = sizeof item;
  for (unsigned i = 0; i < count; ++i) {
    struct_LEAD_Bitmap bitmap{};
    LEADTOOLS::GetBitmapListItem(m_pBitmapList, i, &bitmap);
    CString text = caption(static_cast<int>(i) + 1);
    item.uMask = kPicture | kCaption | kSelection;
    item.pBitmap = &bitmap;
    item.pszText = text.GetBuffer(0);
    item.bSelected = 0;
    LEADTOOLS::ImgListInsert(m_hWnd, &item);
    text.ReleaseBuffer();
  }
  if (count > 0) Select(0, true);
}

void CThumbsWindow::Select(unsigned index, bool selected) {
  _LILITEM item{};
  item.uStructSize = sizeof item;
  LEADTOOLS::ImgListGetItem(m_hWnd, index, &item);
  item.uMask = kSelection;
  item.bSelected = selected ? 1 : 0;
  LEADTOOLS::ImgListSetItem(m_hWnd, index, &item);
}

void CThumbsWindow::SetSel(int page) {
  if (m_pBitmapList == nullptr) return;
  // The items count, not the pictures: a failure may have left pictures without items.
  const auto count = static_cast<unsigned>(LEADTOOLS::ImgListGetItemCount(m_hWnd));
  const auto chosen = static_cast<unsigned>(page - 1);
  if (chosen >= count) return;
  for (unsigned i = 0; i < count; ++i) Select(i, false);
  Select(chosen, true);
  SendMessage(kShowItem, chosen);
}

void CThumbsWindow::ShowFailure(CLeadtoolsException* exception) {
  CString text = CLeadtoolsException::GetErrorMessage(exception->m_nError);
  exception->Delete();
  if (text.IsEmpty() != FALSE) text.LoadString(IDS_ZP_NO_DETAILS);
  MessageBox(text, "Error", 0);
}
