#pragma once

#include "imaging/ltwrap.h"
#include "library/export.h"
#include "platform/framework/wnd.h"
#include "viewing/fit.h"
#include "viewing/mouse_rules.h"
#include "viewing/wheel_rules.h"

class CImageWindow;
class CScrollBar;
class CView;
class CZPView;

/// Where the two windows that show a page differ, beside what they have of their own: each rule that isn't
/// the same for both.
template <typename Base>
struct PageWindowTraits;

/// CImageWindow
template <>
struct PageWindowTraits<CWnd> {
  using Window = CImageWindow;
  using Answer = bool;                            ///< of what is asked with yes or no
  static constexpr bool kFitRuns = false;         ///< a fit is made once, when it is asked for
  static constexpr bool kKeepsMiddle = false;     ///< a zoom goes to a corner, see ShowScale
  static constexpr bool kRenewsCopy = false;      ///< the reduced copy stays while the zoom step is the same
  static constexpr bool kStepLeavesSide = false;  ///< a step out may make a page as small as it will
  static constexpr bool kScrollPaints = false;    ///< a scrolled page is painted when nothing else waits
  static constexpr bool kFrameHasCursor = false;  ///< the mode's cursor stands over the scroll bars too
  static constexpr bool kWatchesCapture = true;   ///< a lost capture takes the zoom selection back
  static constexpr mouse::Modes kModes = {MouseModeDrag, MouseModeDrag, MouseModeZoomIn, MouseModeZoomOut};
};

/// CZPView
template <>
struct PageWindowTraits<CView> {
  using Window = CZPView;
  using Answer = int;
  static constexpr bool kFitRuns = true;         ///< until a zoom by number or step; a resize fits again
  static constexpr bool kKeepsMiddle = true;     ///< the page's point in the middle of the window stays there
  static constexpr bool kRenewsCopy = true;      ///< each zoom makes the reduced copy anew
  static constexpr bool kStepLeavesSide = true;  ///< no step out makes a side shorter than five pixels
  static constexpr bool kScrollPaints = true;    ///< it is seen at once where the page was scrolled to
  static constexpr bool kFrameHasCursor = true;  ///< borders and scroll bars have cursors of their own
  static constexpr bool kWatchesCapture = false;  ///< a selection that is broken off stays armed
  static constexpr mouse::Modes kModes = {ViewMouseDrag, ViewMouseDrag2, ViewMouseZoomIn, ViewMouseZoomOut};
};

/// A window that shows a page, scaled and scrolled: what CImageWindow and CZPView have in common. Where the
/// page comes from is theirs, and so are the names of some operations. Scale, fit mode and mouse mode outlast
/// changes of page.
///
/// The window that is made of it has the fields for position, scale, modes, selection and reduced copy, whose
/// order in the object is its own, as CImageWindow has them, and ShownPage, the bitmap at full size or null,
/// IsAtPage, whether a zoom has something to show, IsBilevel, DoSmartResizing, Report, UpdateZoomStatus,
/// ZoomToScaleFactor, FitToWidth, FitToHeight, BestFit, SetMouseMode and IsStaleAfterResize; these are called
/// as the window's own, so that a class derived from it takes over the virtual ones.
template <typename Base>
class CPageWindow : public Base {
 public:
  using Answer = typename PageWindowTraits<Base>::Answer;

  CPageWindow(const CPageWindow&) = delete;
  CPageWindow& operator=(const CPageWindow&) = delete;

  /// The scale, 1 to 1000, rounded; exactly half downwards.
  int GetScalePercent() const;
  /// One step of the chain 1:64 ... 1:4, 1:2, 1:1, 2:1, 3:1 ... 10:1. Nothing at its ends, but a running fit
  /// ends all the same.
  void ZoomIn();
  /// As ZoomIn, to the next smaller scale.
  void ZoomOut();
  /// Whether ZoomIn would change the scale.
  Answer ZoomInPossible() const;
  /// Whether ZoomOut would change the scale.
  Answer ZoomOutPossible() const;
  /// Keeps the mode and, if it is another one than before, fits.
  void SetFitMode(int mode);
  /// FitModeNone, FitModeWidth, FitModeHeight or FitModeBest.
  int GetFitMode() const { return Self().m_nFitMode; }
  /// What the left button does: MouseModeNone, MouseModeDrag, MouseModeZoomIn ...
  int GetMouseMode() const { return Self().m_nMouseMode; }
  /// Arms the zoom selection, or takes that back: the next drag of the mouse draws a frame, and what it holds
  /// fills the window. It is good for one drag.
  void ToggleZoomSelect();
  /// Whether the zoom selection is armed.
  Answer IsZoomSelected() const { return Self().m_bZoomSelect; }

 protected:
  /// Starts at the scale of the user's settings, taken as it is; the first page replaces one that isn't
  /// legal.
  CPageWindow();
  ~CPageWindow() override;

  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  /// What the standard library throws while a message is handled (no memory, say) is reported, and the
  /// message given up.
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

  // Scale (detail/page_window_scale.h)

  /// Full size of the page; 0 by 0 without one.
  CSize PageSize() const;
  /// Whether a reduced copy stands for the page.
  bool IsReduced() const;
  void FreeSmartBitmap();
  /// What ZoomToScaleFactor does. False if the factor is refused.
  bool ScaleTo(double factor);
  /// Multiplies the scale, but not beyond the highest; the multiplier that was used.
  double MultiplyScale(double multiplier);
  /// Sets the factor from the divisor.
  void CalcScaleFactor();
  void FitSide(fit::Side side);
  void FitBestSide();
  void ZoomToFitMode();
  /// To the nearest whole number; exactly half goes down.
  static int RoundDouble(double value);
  /// Bytes of a row of so many bits, padded to 4 bytes.
  static int GetWidthBytes(int bits);

  // Position (detail/page_window_scroll.h)

  /// Takes scaled size and scroll bars from page and scale. Where the middle isn't kept it goes to the top
  /// left corner; else the position is the caller's to set.
  void UpdateScroll();
  /// Goes to a position, within the limits, and repaints. erase: the background too.
  void SetScrollPos(CPoint position, BOOL erase);
  void MoveScrollPos(CSize offset);
  /// Fits by the fit mode, and again until the client area stays as it was when the fit was worked out.
  void FitUntilSettled();

  // Mouse, keyboard (detail/page_window_input.h)

  /// Shift turns the direction over.
  bool ClickZoomsIn() const;
  bool IsStepPossible(bool in) const;
  /// in, possible: of a click in a zoom mode. Nothing for a mode that isn't known.
  void ShowModeCursor(bool in, bool possible) const;
  /// The selection's top left corner comes to the window's, and all of it fits. Nothing for an empty one.
  void ZoomToSelection();
  /// Draws the frame of a selection again over what was just painted.
  void RestoreBand(CDC* dc);
  /// Ends a drag or a selection whose button is still down: what it works on goes, or another mode comes.
  void BreakOff();

  /// Paints the page. False: there is none, or it can't be painted, which has been reported.
  bool PaintShown(HDC dc, RECT* clip);

  int OnCreate(LPCREATESTRUCT cs);
  void OnSize(UINT type, int cx, int cy);
  void OnHScroll(UINT code, UINT position, CScrollBar* bar);
  void OnVScroll(UINT code, UINT position, CScrollBar* bar);
  BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
  void OnLButtonDown(UINT flags, CPoint point);
  void OnLButtonUp(UINT flags, CPoint point);
  void OnMouseMove(UINT flags, CPoint point);
  void OnCaptureChanged(CWnd* window);
  BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
  BOOL OnMouseHWheel(UINT flags, short delta, CPoint point);
  void OnKeyDown(UINT key, UINT repeat, UINT flags);
  void OnKeyUp(UINT key, UINT repeat, UINT flags);
  void OnContextMenu(CWnd* window, CPoint point);

 private:
  using Traits = PageWindowTraits<Base>;
  using Window = typename Traits::Window;

  static constexpr SIZE kBandSides = {1, 1};  ///< of a selection's frame

  Window& Self() { return static_cast<Window&>(*this); }
  const Window& Self() const { return static_cast<const Window&>(*this); }

  void EndRunningFit();
  /// Moves the thumbs to the position.
  void ShowThumbs();
  void StepTo(int divisor, CPoint corner);
  /// Brings the window in line with a new scale. corner: where to go, unless the middle is kept.
  void ShowScale(double before, CPoint corner);
  void ZoomToFit(double factor);
  void ScrollByWheel(int bar, int delta);
  void TurnPageByWheel(int delta);
  /// A zoom step, which is told. False: the window is gone.
  bool StepAndTell(bool in);
  void ZoomAt(CPoint point);
  void SetShift(bool down);
  void DrawBand(const CRect& band, LPCRECT last);
  void MoveBand(const CRect& band);

  wheel::Notches m_wheel;

  DECLARE_MESSAGE_MAP()
};
