#pragma once

#include "docview/bitmap_borrower.h"
#include "docview/view_rules.h"
#include "imaging/ltwrap.h"
#include "library/export.h"
#include "platform/framework/view.h"

class CPaintDC;
class CScrollBar;
class CZPDoc;
template <class Window>
class PageInput;

/// Shows the active page of a CZPDoc, scaled and scrolled. The page's bitmap stays the document's; it comes
/// with the document's hints. A page that can't be shown is a crossed box with a text, a document without
/// pages is grey.
///
/// Scale, fit mode and mouse mode outlast changes of page. A fit mode is a running state: it is applied again
/// to each page and whenever the window changes its size, until a zoom by number or step ends it. A zoom
/// keeps the page's point in the middle of the window where it is. Mouse modes are those of view_rules.h, fit
/// modes those of fit.h. A host may derive from it: the calls of its virtual operations within the
/// class reach the derived class.
class TESSAREL_API CZPView : public CView, public CZPBitmapBorrower {
  DECLARE_DYNCREATE(CZPView)
 public:
  CZPView(const CZPView&) = delete;
  CZPView& operator=(const CZPView&) = delete;

  /// The scale that is asked for, 1.0 being one page pixel per screen pixel. Ends a running fit, also if the
  /// factor is refused, of which 0 tells.
  int ZoomToScaleFactor(double factor);
  /// One step; both end a running fit.
  void ZoomIn();
  void ZoomOut();
  int ZoomInPossible() const;
  int ZoomOutPossible() const;
  int GetScalePercent() const;
  /// Keeps the mode and, if it is another one than before, fits. A mode above 0 needs a page that is shown.
  void SetFitMode(int mode);
  int GetFitMode() const { return m_nFitMode; }
  /// Scale the page to the window, unless the scale would lie outside the limits. The fit mode stays.
  virtual void ZoomFitToWidth();
  virtual void ZoomFitToHeight();
  virtual void ZoomBestFit();
  /// 0: the mouse is elsewhere, and only the mode was set.
  virtual int SetMouseMode(int mode);
  int GetMouseMode() const { return m_nMouseMode; }
  /// Whether the next drag of the mouse zooms to what it frames.
  int IsZoomSelected() const { return m_bZoomSelect; }
  /// Arms the zoom selection, or takes that back.
  void ToggleZoomSelect();

  void OnInitialUpdate() override;
  void ForgetBitmap() override;

 protected:
  CZPView();
  ~CZPView() override;

  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  void OnUpdate(CView* sender, LPARAM hint, CObject* hintObject) override;
  void OnDraw(CDC* dc) override;
  /// Makes the reduced copy of a bilevel page for the current divisor anew.
  virtual void DoSmartResizing();
  /// Paints the page. 0: there is none, or it can't be painted.
  virtual int DisplayBmp(CDC* dc);

  /// Takes scaled size and scroll ranges from page and scale; the position is the caller's to set.
  void UpdateScroll();
  /// Goes to a position, within the limits, and repaints. erase: the background too.
  void SetScrollPos(CPoint position, BOOL erase);
  /// Goes where the page's point in the middle of the client area was at another scale.
  void SetZoomedScrollPos(double oldFactor);
  void MoveScrollPos(CSize offset);
  /// Sets the factor from the divisor.
  void CalcScaleFactor();
  void ZoomToFitMode();
  void ZoomToSelection();
  /// Told after a zoom that the view made by itself; hands on to the frame.
  void UpdateZoomStatus();
  /// To the nearest whole number; exactly half goes down.
  static int RoundDouble(double value);
  /// Bytes of a row of so many bits, padded to 4 bytes.
  static int GetWidthBytes(int bits);

  int OnCreate(LPCREATESTRUCT cs);
  void OnSize(UINT type, int cx, int cy);
  void OnHScroll(UINT code, UINT position, CScrollBar* bar);
  void OnVScroll(UINT code, UINT position, CScrollBar* bar);
  void OnLButtonDown(UINT flags, CPoint point);
  void OnLButtonUp(UINT flags, CPoint point);
  void OnMouseMove(UINT flags, CPoint point);
  BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
  void OnKeyDown(UINT key, UINT repeat, UINT flags);
  void OnKeyUp(UINT key, UINT repeat, UINT flags);
  void OnContextMenu(CWnd* window, CPoint point);
  BOOL OnMouseWheel(UINT flags, short delta, CPoint point);

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
  /// Null for a view that was made without one.
  CZPDoc* Document() const;
  /// Full size of the page; 0 by 0 without one.
  CSize PageSize() const;
  /// Whether a reduced copy stands for the page.
  bool IsReduced() const;
  void FreeSmartBitmap();
  /// Zooms, but lets a running fit run.
  void ZoomKeepingFit(double factor);
  void StepTo(int divisor);
  /// Brings the view in line with a new scale.
  void ShowScale(double oldFactor);
  /// The crossed box with its text.
  void DrawNoPage(CDC* dc);
  // What a click does in the current mode, for PageInput.
  bool ClickDrags() const;
  bool ClickZooms() const;
  bool ClickZoomsIn() const;
  /// Zooms as far as the scale goes; the multiplier that was used.
  double MultiplyScale(double multiplier);

  friend class PageInput<CZPView>;

  DECLARE_MESSAGE_MAP()
};
