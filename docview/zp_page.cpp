#include "docview/zp_page.h"

#include <cstdint>

#include "docview/load_progress.h"
#include "library/failure.h"
#include "platform/framework/wnd.h"
#include "platform/window/control_messages.h"
#include "viewing/page_source.h"
#include "viewing/square_pixels.h"

namespace {

constexpr unsigned kRotateFlags = 5;
constexpr int kFullTurn = 36000;

_LOADFILEOPTION OptionsFor(int page) {
  _LOADFILEOPTION options{};
  LEADTOOLS::GetDefaultLoadFileOption(&options);
  // The service counts from 1. No number overflows; the service refuses those that are no page.
  options.PageNumber = static_cast<int>(static_cast<unsigned>(page) + 1U);
  return options;
}

void TurnUpright(struct_LEAD_Bitmap* bitmap) {
  if (bitmap->ViewPerspective != 0) LEADTOOLS::ChangeBitmapViewPerspective(nullptr, bitmap, 0);
}

void MakePixelsSquare(struct_LEAD_Bitmap* bitmap) {
  const auto size = square_pixels::StretchedExactly(
      {bitmap->Width, bitmap->Height}, {bitmap->XResolution, bitmap->YResolution}, square_pixels::OfScreen());
  if (size) square_pixels::Resize(bitmap, *size);
}

int Report(CLeadtoolsException* exception) {
  ReportFailure(exception);
  return 0;
}

void FreeRecord(struct_LEAD_Bitmap* record) {
  LEADTOOLS::FreeBitmap(record);
  delete record;
}

}  // namespace

// Copies

CZPPage::CZPPage(const CZPPage& other)
    : m_nFormat(other.m_nFormat),
      m_fileInfo(other.m_fileInfo),
      m_bitmap(other.m_bitmap),
      m_nRotation(other.m_nRotation) {
  other.Share();
  m_pShared = other.m_pShared;
}

CZPPage& CZPPage::operator=(const CZPPage& other) {
  if (this == &other) return *this;
  other.Share();  // before the release, which may be of the same pixels
  ReleaseBitmap();
  m_nFormat = other.m_nFormat;
  m_fileInfo = other.m_fileInfo;
  m_bitmap = other.m_bitmap;
  m_nRotation = other.m_nRotation;
  m_pShared = other.m_pShared;
  return *this;
}

CZPPage::~CZPPage() {
  ReleaseBitmap();
}

void CZPPage::Share() const {
  if (!HasBitmap())
    m_pShared.reset();
  else if (!IsShared())
    m_pShared = std::shared_ptr<struct_LEAD_Bitmap>(new struct_LEAD_Bitmap(m_bitmap), &FreeRecord);
}

void CZPPage::ReleaseBitmap() {
  if (!HasBitmap()) return;
  if (!IsShared()) {  // never copied, or a subclass put other pixels in the place of those that were
    LEADTOOLS::FreeBitmap(&m_bitmap);
    return;
  }
  m_bitmap.Flags &= ~leadtools12::kAllocated;
  m_bitmap.pStorage = nullptr;
  m_pShared.reset();
}

// Loading

int CZPPage::LoadPage(struct_LEAD_Bitmap* pBitmap, int nFormat, leadtools12::LoadRowCallback, void*) {
  try {
    LEADTOOLS::CopyBitmap(&m_bitmap, pBitmap);
    TurnUpright(&m_bitmap);
  } catch (CLeadtoolsException* exception) {
    return Report(exception);
  }
  m_nFormat = nFormat;
  return TellLoaded(1);
}

int CZPPage::LoadPage(const char* pszFile, int nPage, leadtools12::LoadRowCallback pfnCallback,
                      void* pUserData) {
  return TellLoaded(DoLoad(&m_bitmap, pszFile, nPage, pfnCallback, pUserData));
}

int CZPPage::LoadPage(BYTE* pBuffer, DWORD dwSize, int nPage, leadtools12::LoadRowCallback pfnCallback,
                      void* pUserData) {
  return TellLoaded(DoLoad(&m_bitmap, pBuffer, dwSize, nPage, pfnCallback, pUserData));
}

int CZPPage::TellLoaded(int loaded) {
  if (loaded == 0) return 0;
  OnLoaded();
  return 1;
}

void CZPPage::NoteInformation() {
  m_nFormat = m_fileInfo.Format;
  m_fileInfo.InfoFlags = leadtools12::kInfoIsFilled;
}

int CZPPage::DoLoad(struct_LEAD_Bitmap* pBitmap, const char* pszFile, int nPage,
                    leadtools12::LoadRowCallback pfnCallback, void* pUserData) {
  return LoadFrom(PageSource::File(pszFile), pBitmap, nPage, pfnCallback, pUserData);
}

int CZPPage::DoLoad(struct_LEAD_Bitmap* pBitmap, BYTE* pBuffer, DWORD dwSize, int nPage,
                    leadtools12::LoadRowCallback pfnCallback, void* pUserData) {
  return LoadFrom(PageSource::Memory(pBuffer, static_cast<long>(dwSize)), pBitmap, nPage, pfnCallback,
                  pUserData);
}

int CZPPage::LoadFrom(const PageSource& source, struct_LEAD_Bitmap* bitmap, int page,
                      leadtools12::LoadRowCallback callback, void* userData) {
  try {
    _LOADFILEOPTION options = OptionsFor(page);
    source.Describe(&m_fileInfo, &options);
    NoteInformation();
    if (callback != nullptr)
      options.PassCount = 0;
    else
      userData = nullptr;
    source.LoadRows(bitmap, callback, userData, &options, &m_fileInfo);
    TurnUpright(bitmap);
    MakePixelsSquare(bitmap);
  } catch (CLeadtoolsException* exception) {
    return FailLoad(bitmap, exception);
  }
  return 1;
}

int CZPPage::FailLoad(struct_LEAD_Bitmap* bitmap, CLeadtoolsException* exception) {
  // The view marks such a page; only a document without any other tells why.
  const Failure failure = TakeFailure(exception);
  m_nFailure = failure.code;
  m_strFailure = failure.text;
  if (bitmap == &m_bitmap)
    ReleaseBitmap();
  else if (bitmap != nullptr && (bitmap->Flags & leadtools12::kAllocated) != 0)
    LEADTOOLS::FreeBitmap(bitmap);
  return 0;
}

int CZPPage::LoadCallback(struct_file_information* pInfo, struct_LEAD_Bitmap*, BYTE*, UINT, int nRow,
                          int nLines, void* pUserData) {
  CWnd* const bar = CWnd::FromHandle(static_cast<HWND>(pUserData));
  if (pInfo == nullptr || bar == nullptr || nLines == 0) return 1;
  const int percent = load_progress::Percent(nRow, pInfo->Height);
  const auto position = static_cast<int>(bar->SendMessage(PBM_GETPOS));
  if (load_progress::IsWorthShowing(percent, position))
    bar->SendMessage(PBM_SETPOS, static_cast<WPARAM>(percent));
  return 1;
}

// Use

int CZPPage::Activate(int bActivate) {
  return bActivate == 0 || HasBitmap() ? 1 : 0;
}

struct_LEAD_Bitmap* CZPPage::GetHBitmap() {
  return HasBitmap() ? &m_bitmap : nullptr;
}

int CZPPage::Rotate(int nAngle, int bRemember) {
  if (!HasBitmap()) return 0;
  if (nAngle == 0) return 1;
  try {
    LEADTOOLS::RotateBitmap(&m_bitmap, nAngle, kRotateFlags, 0);
  } catch (CLeadtoolsException* exception) {
    return Report(exception);
  }
  if (bRemember != 0) m_nRotation = static_cast<int>((std::int64_t{nAngle} + m_nRotation) % kFullTurn);
  return 1;
}
