#include "print/print_bitmap.h"

#include "platform/graphics/gdi.h"
#include "print/print_dialogs.h"
#include "print/print_job.h"
#include "print/sheet_size.h"

namespace {

/// True size, from the corner of the paper. Each axis goes by its own resolution.
void DrawActualSize(struct_LEAD_Bitmap* bitmap, CDC& dc) {
  const sheet::Page page = sheet::UprightPage(*bitmap);
  const SIZE size =
      sheet::ActualSize(page, std::nullopt, {dc.GetDeviceCaps(LOGPIXELSX), dc.GetDeviceCaps(LOGPIXELSY)});
  dc.SetWindowOrg(dc.GetDeviceCaps(PHYSICALOFFSETX), dc.GetDeviceCaps(PHYSICALOFFSETY));
  RECT destination{0, 0, std::max(size.cx, 1), std::max(size.cy, 1)};
  LEADTOOLS::PaintDC(dc, bitmap, nullptr, nullptr, &destination, nullptr, SRCCOPY);
}

/// Nothing for a value that is no format.
void Draw(struct_LEAD_Bitmap* bitmap, CDC& dc) {
  const bool known = sheet::IsKnown({bitmap->XResolution, bitmap->YResolution});
  int format = g_PrintFormatDlg.m_nFormat;
  if (format == PrintFormatActualSize && !known) format = PrintFormatFitToPage;
  if (format == PrintFormatActualSize)
    DrawActualSize(bitmap, dc);
  else if (format == PrintFormatFitToPage)
    LEADTOOLS::PrintBitmapExt(dc, bitmap, 1, 1, 0, 0, 0);
  else if (format == PrintFormatPixelToPixel)
    LEADTOOLS::PrintBitmapExt(dc, bitmap, 1, 1, sheet::UprightPage(*bitmap).width,
                              sheet::UprightPage(*bitmap).height, 0);
}

}  // namespace

CPrintBitmap::CPrintBitmap(const char* appName) : m_strAppName(appName) {}

int CPrintBitmap::GetPrintFormat() {
  return g_PrintFormatDlg.m_nFormat;
}

void CPrintBitmap::SetPrintFormat(PrintFormat format) {
  g_PrintFormatDlg.m_nFormat = format;
}

void CPrintBitmap::Print(struct_LEAD_Bitmap* bitmap, CWnd* parent, bool defaultPrinter, PrintFormat format) {
  if (bitmap == nullptr) throw new CLeadtoolsException(imaging::kErrorInvalidParameter);
  SetPrintFormat(format);
  CPrintDialog dialog(FALSE, PD_NOPAGENUMS | PD_NOSELECTION, nullptr);
  CustomizePrintDialog(dialog);
  const DialogHandles handles(dialog.m_pd, nullptr, nullptr);
  AbortStage stage(parent);
  if (!ChoosePrinter(dialog, defaultPrinter)) {
    stage.Dismiss();
    return;
  }
  CDC dc;  // ends what the dialog has made, whatever comes
  TakeDeviceContext(dialog.m_pd.hDC, dc);
  stage.ThrowIfParentGone();
  AbortStage::Open(dc, parent);
  PrintSheet(bitmap, dc);
}

void CPrintBitmap::PrintSheet(struct_LEAD_Bitmap* bitmap, CDC& dc) const {
  const CString document = m_strAppName + ": Current Page";
  ThrowIfAborted();
  Check(dc.StartDoc(document));
  Check(dc.StartPage());
  ThrowIfAborted();
  Draw(bitmap, dc);
  ThrowIfAborted();
  Check(dc.EndPage());
  Check(dc.EndDoc());
}
