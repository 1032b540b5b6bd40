#pragma once

#include <array>

#include "imaging/ltwrap.h"
#include "library/export.h"
#include "library/report_error.h"
#include "viewing/page_window.h"

class CImageWindowFrame;
class PageSource;

extern template class TESSAREL_API CPageWindow<CWnd>;

/// A window that shows one page at a time of an image file or of an image in memory, scaled and scrolled.
///
/// Opening only learns how many pages there are; LoadPage decodes one, anew each time. Pages are counted
/// from 1. A failure of the imaging service is told once, to the report-error callback, and the operation
/// gives false. Everything runs on the window's thread.
class TESSAREL_API CImageWindow : public CPageWindow<CWnd> {
  DECLARE_DYNCREATE(CImageWindow)
 public:
  /// Starts at the scale of the user's settings. Shows nothing until Create and an open.
  CImageWindow();
  ~CImageWindow() override;

  /// Closes what was open, then opens a file, but decodes nothing and keeps the scale. False: nothing is
  /// open.
  bool OpenImageFile(const char* path);
  /// The same for a file image in memory. The block stays the caller's and must live as long as it is shown.
  bool OpenImageMemory(void* block, unsigned long size);
  /// The scale that is asked for, 0.01 to 10.0, 1.0 being one page pixel per screen pixel; a page so small
  /// that a side would be below 5 pixels gets a larger one. Shows the page's top left corner. False if the
  /// factor is refused.
  virtual bool ZoomToScaleFactor(double factor) { return ScaleTo(factor); }
  /// Shows a page from its top left corner. False if there is no such page, which changes nothing, or if it
  /// can't be decoded, which leaves the window without a picture.
  virtual bool LoadPage(int page);

  /// 0 while nothing is open.
  int GetCurrPage() const { return m_nCurrPage; }
  /// How many pages the source has; 0 while nothing is open.
  int GetMaxPage() const { return m_nMaxPage; }
  /// What the source says of the page that was loaded last: depth, resolution, compression, and how many rows
  /// of a fax page couldn't be decoded. All zero before the first load.
  const struct_file_information& GetPageInfo() const { return m_pageInfo; }
  /// A header of m_Bitmap, which keeps the pixels, with the resolution that they have as they are shown:
  /// square, and turned perhaps.
  struct_LEAD_Bitmap GetShownBitmap() const;
  /// Empty for an image in memory.
  CString GetFilePath() const { return m_strFilePath; }
  /// The path's part behind its last separator.
  CString GetFileName() const;
  /// Gives back what OpenImageMemory got; null and 0 for a file.
  void GetFileBuf(char** block, int* size) const;
  /// Null brings the default back, a message box.
  void SetReportErrorCallBack(ReportErrorFunction function);

  /// Multiplies the scale, but not beyond the highest; the multiplier that was used.
  double MultiplyScaleFactor(double multiplier) { return MultiplyScale(multiplier); }
  /// The scale, 0.01 to 10.0: screen pixels for a page pixel.
  double GetScaleFactor() const { return m_dScaleFactor; }
  /// Scale once; a later change of the window's size doesn't fit again.
  void FitToWidth() { FitSide(fit::Side::Width); }
  /// As FitToWidth, to the height.
  void FitToHeight() { FitSide(fit::Side::Height); }
  /// As FitToWidth, so that the whole page is seen.
  void BestFit() { FitBestSide(); }
  /// Shows the mode's cursor too. A mode that isn't known is kept and does nothing.
  void SetMouseMode(int mode);
  /// Turns the page by quarter turns, clockwise. store: the pages that come are turned too. The source isn't.
  bool Rotate(int degrees, bool store);
  /// Writes the source, as it is and not as it is shown, into another file: a copy if both names end alike,
  /// else all pages into a tif, or one page into a bmp or jpg. Tells the user of success in a message box.
  /// False after a reported failure or if the user refuses.
  bool ExportAs(CString target);
  /// Shows what the source says of the current page, until the user closes the dialog.
  void ShowPropertiesDlg();
  /// Prints the page as it is shown on the default printer, without a dialog. Failures are reported, as in
  /// PrintCurFile.
  void PrintCurrentPage();
  /// Prints the source, as it is and not as it is shown. The print dialog comes up unless the default printer
  /// is to be taken; parent, which may be null, is disabled while the job runs.
  void PrintCurFile(CWnd* parent, bool defaultPrinter);

  // State, for hosts to read.

  CPoint m_ptScroll;           ///< the pixel of the scaled page at the client area's top left corner
  CPoint m_ptScrollMax;        ///< the largest such position
  CSize m_szClient;            ///< client area, pixels
  CSize m_szScaled;            ///< page at the current scale, pixels
  char* m_pFileBuf = nullptr;  ///< image in memory, the caller's
  int m_nFileBufSize = 0;
  int m_nFitMode = FitModeNone;
  CString m_strFilePath;                   ///< empty: the source is the memory block
  double m_dScaleFactor;                   ///< all drawing and scrolling goes by this
  bool m_bMultiLevel = false;              ///< false: the page has 1 bit per pixel in its file
  std::array<RGBQUAD, 256> m_GrayPalette;  ///< from black to white; colours of m_SmartBitmap
  int m_nCurrPage = 0;
  int m_nMaxPage = 0;
  int m_nRotation = 0;     ///< degrees
  int m_nZoomDivisor = 1;  ///< the zoom step last snapped to: above 0 a reduction 1 : n, below an enlargement
  CPoint m_ptSelStart;     ///< zoom selection, client coordinates
  CPoint m_ptSelEnd;
  int m_nMouseMode = MouseModeNone;
  bool m_bZoomSelect = false;
  bool m_bShiftDown = false;
  CPoint m_ptDragLast;
  struct_LEAD_Bitmap m_Bitmap{};       ///< the page at full size, its pixels square
  struct_LEAD_Bitmap m_SmartBitmap{};  ///< a bilevel page reduced to grey by the divisor; empty unless needed
  ReportErrorFunction m_pfnReportError = &CImageWindow::ReportErrorDefault;
  int m_nPrintFormat = 0;

 protected:
  /// Told after a zoom by mouse or wheel. Hands on to the parent, or its parent, if that is a
  /// CImageWindowFrame.
  virtual void UpdateZoomStatus();
  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  void PostNcDestroy() override;

  /// Back to nothing open; scale, modes, callback and scroll position stay.
  void Initialize();
  /// Shows a message box, for every code but that of a job ended by the user.
  static void ReportErrorDefault(int code, CString text);

  /// False if nothing was painted.
  bool DoDraw(CPaintDC* dc);
  /// Makes m_SmartBitmap anew for the current page and divisor.
  void DoSmartResizing();
  /// Reduces an 8-bit bitmap of two levels in a global block by the divisor, to the share of light pixels.
  /// The new block is the caller's; null if the page is smaller than the divisor, isn't of that kind, or
  /// memory is short.
  void* SmartResize(void* sourceBlock);
  static CRect GetStartEndRect(CPoint start, CPoint end);

  int OnCreate(LPCREATESTRUCT cs);
  void OnPaint();
  BOOL OnEraseBkgnd(CDC* dc);
  void OnDropFiles(HDROP drop);
  /// The name of a file format; empty if it has none.
  static CString GetFileFormat(int code);

 private:
  friend class CPageWindow<CWnd>;

  bool HasPage() const { return (m_Bitmap.Flags & leadtools12::kAllocated) != 0; }
  const struct_LEAD_Bitmap* ShownPage() const { return m_nCurrPage >= 1 && HasPage() ? &m_Bitmap : nullptr; }
  bool IsAtPage() const { return m_nCurrPage >= 1; }
  bool IsBilevel() const { return !m_bMultiLevel; }
  /// At the top left corner the page stays where it was, and what is uncovered is invalid already.
  bool IsStaleAfterResize(bool /*moved*/) const { return m_ptScroll.x != 0 || m_ptScroll.y != 0; }
  void FreeBitmaps();
  /// This window or its block of memory is about to go, in the midst of a print job perhaps.
  void StopPrinting();
  /// The page's pixels are about to go, or to move.
  void StopPrintingPage();
  /// Tells the callback and ends the exception.
  void Report(CLeadtoolsException* exception);
  /// Counts the pages of a source that is opened. False after a failure that was told, or if something else
  /// was opened meanwhile.
  bool Count(const PageSource& source, int& pages);
  /// Decodes a page of the source into m_Bitmap; throws. False, and nothing is changed, if something else is
  /// shown meanwhile, or the window is gone.
  bool Decode(int page);
  /// Repeats rows or columns of m_Bitmap until its pixels are square on the screen; throws.
  void MakePixelsSquare();
  /// The frame round this window, or null.
  CImageWindowFrame* Frame() const;
  void OpenDropped(const char* path);
  bool ExportByCopy(const CString& target);
  bool ExportPages(const CString& target);

  struct_file_information m_pageInfo{};  ///< what the source says of the page in m_Bitmap
  unsigned m_nLoads = 0;                 ///< tells a load whether another one has begun meanwhile

  DECLARE_MESSAGE_MAP()
};
