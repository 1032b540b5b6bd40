#include "clipboard_copy.h"

namespace {

/// The page's bitmap, or a copy of a part of it, as a device-independent bitmap; null on failure.
HGLOBAL MakeDib(struct_LEAD_Bitmap shown, const CRect& part) {
  if (part.IsRectEmpty() != FALSE) return LEADTOOLS::ConvertToDIB(&shown);
  struct_LEAD_Bitmap copy{};
  LEADTOOLS::InitBitmap(&copy, 0, 0, 1);
  LEADTOOLS::CopyBitmapRect(&copy, &shown, static_cast<unsigned>(part.left), static_cast<unsigned>(part.top),
                            static_cast<unsigned>(part.Width()), static_cast<unsigned>(part.Height()));
  copy.XResolution = shown.XResolution;
  copy.YResolution = shown.YResolution;
  HGLOBAL dib = nullptr;
  try {
    dib = LEADTOOLS::ConvertToDIB(&copy);
  } catch (...) {
    LEADTOOLS::FreeBitmap(&copy);
    throw;
  }
  LEADTOOLS::FreeBitmap(&copy);
  return dib;
}

}  // namespace

bool CopyToClipboard(CImageWindow& window, const CRect& part) {
  HGLOBAL dib = nullptr;
  try {
    dib = MakeDib(window.GetShownBitmap(), part);
  } catch (CLeadtoolsException* exception) {
    exception->Delete();
    return false;
  }
  if (dib == nullptr || OpenClipboard(window.m_hWnd) == FALSE) {
    GlobalFree(dib);
    return false;
  }
  EmptyClipboard();
  const bool taken = SetClipboardData(CF_DIB, dib) != nullptr;
  if (!taken) GlobalFree(dib);
  return CloseClipboard() != FALSE && taken;
}
