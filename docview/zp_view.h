#pragma once

#include "docview/bitmap_borrower.h"
#include "library/export.h"
#include "platform/framework/view.h"
#include "viewing/page_window.h"

class CZPDoc;

extern template class TESSAREL_API CPageWindow<CView>;

/// Shows the active page of a CZPDoc, scaled and scrolled. The page's bitmap stays the document's; it comes
/// with the document's hints. A page that can't be shown is a crossed box with a text, a document without
/// pages is grey.
///
/// Scale, fit mode and mouse mode outlast changes of page. A fit mode is a running state: it is applied again
/// to each page and whenever the window changes its size, until a zoom by number or step ends it. A zoom
/// keeps the page's point in the middle of the window where it is. Mouse modes are those of mouse_rules.h,
/// fit modes those of fit.h. A host may derive from it: the calls of its virtual operations within the
/// class reach the derived class.
class TESSAREL_API CZPView : public CPageWindow<CView>, public CZPBitmapBorrower {
  DECLARE_DYNCREATE(CZPView)
 public:
  /// The scale that is asked for, 1.0 being one page pixel per screen pixel. Ends a running fit, also if the
  /// factor is refused, of which 0 tells.
  int ZoomToScaleFactor(double factor) { return ScaleTo(factor) ? 1 : 0; }
  /// Scale the page to the window, unless the scale would lie outside the limits. The fit mode stays.
  virtual void ZoomFitToWidth() { FitSide(fit::Side::Width); }
  /// As ZoomFitToWidth, to the height; a page that is wider then is scrolled sideways.
  virtual void ZoomFitToHeight() { FitSide(fit::Side::Height); }
  /// As ZoomFitToWidth, so that the whole page is seen.
  virtual void ZoomBestFit() { FitBestSide(); }
  /// 0: the mouse is elsewhere, and only the mode was set.
  virtual int SetMouseMode(int mode);

  void OnInitialUpdate() override;
  void ForgetBitmap() override;

 protected:
  CZPView();
  ~CZPView() override;

  void OnUpdate(CView* sender, LPARAM hint, CObject* hintObject) override;
  void OnDraw(CDC* dc) override;
  /// Tells screen readers what is shown.
  void Describe();
  /// Makes the reduced copy of a bilevel page for the current divisor anew.
  virtual void DoSmartResizing();
  /// Paints the page. 0: there is none, or it can't be painted.
  virtual int DisplayBmp(CDC* dc);

  /// Goes where the page's point in the middle of the client area was at another scale.
  void SetZoomedScrollPos(double oldFactor);
  /// Told after a zoom that the view made by itself; hands on to the frame.
  void UpdateZoomStatus();

  int m_nFitMode = 0;
  CPoint m_ptSelStart;  ///< zoom selection, client coordinates
  CPoint m_ptSelEnd;
  int m_bZoomSelect = 0;
  int m_bShiftDown = 0;
  CPoint m_ptDragLast;
  int m_nMouseMode = ViewMouseNone;
  CPoint m_ptScroll;     ///< the pixel of the scaled page at the client area's top left corner
  CPoint m_ptScrollMax;  ///< the largest such position
  CSize m_szClient;
  CSize m_szScaled;                         ///< page at the current scale, pixels
  double m_dScaleFactor;                    ///< starts at the scale of the user's settings
  int m_nZoomDivisor = 1;                   ///< above 0 a reduction 1 : n, below an enlargement
  struct_LEAD_Bitmap m_SmartBitmap{};       ///< a bilevel page reduced by the divisor; empty unless needed
  struct_LEAD_Bitmap* m_pBitmap = nullptr;  ///< the active page's; the document's

 private:
  friend class CPageWindow<CView>;

  /// Null for a view that was made without one.
  CZPDoc* Document() const;
  /// The crossed box with its text.
  void DrawNoPage(CDC* dc);
  /// Whether it is a crossed box that follows the window.
  bool IsStaleAfterResize(bool moved) const;

  const struct_LEAD_Bitmap* ShownPage() const { return m_pBitmap; }
  bool IsAtPage() const { return m_pBitmap != nullptr; }
  bool IsBilevel() const { return m_pBitmap->BitsPerPixel == 1; }
  static void Report(CLeadtoolsException* exception);
  void FitToWidth() { ZoomFitToWidth(); }
  void FitToHeight() { ZoomFitToHeight(); }
  void BestFit() { ZoomBestFit(); }
};
