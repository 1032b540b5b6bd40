#pragma once

class CWnd;

/// What a left click in the page does.
enum class Click { Drag, ZoomIn, ZoomOut };

/// What shows the pages of a viewer, as its commands know it. Pages are counted from 1.
class ViewerDisplay {
 public:
  // Pages

  virtual int Page() const = 0;  ///< 0 while there is none
  /// 0 while nothing is open.
  virtual int Pages() const = 0;
  /// Whether there is a page, and whether it could be decoded.
  virtual bool IsOpen() const = 0;
  /// Whether there is a page that could be decoded.
  virtual bool IsShown() const = 0;
  /// False if there is no such page or it can't be shown, which is told already.
  virtual bool ShowPage(int page) = 0;
  /// Turns the page that is shown; degrees, clockwise.
  virtual void Rotate(int degrees) = 0;
  /// Shows what the file says of the page, until the user closes the dialog.
  virtual void ShowProperties() = 0;
  /// Prints all pages, after the print dialog. The parent is disabled meanwhile.
  virtual void PrintFile(CWnd* parent) = 0;
  /// Prints the page that is shown on the default printer, without a dialog.
  virtual void PrintPage() = 0;

  // Scale

  /// 1 to 1000, rounded.
  virtual int ScalePercent() const = 0;
  /// A factor that isn't legal changes nothing.
  virtual void Scale(double factor) = 0;
  /// To the next larger of the zoom steps; nothing at the end of them.
  virtual void StepIn() = 0;
  /// To the next smaller one.
  virtual void StepOut() = 0;
  /// Whether StepIn would change the scale.
  virtual bool CanStepIn() const = 0;
  /// Whether StepOut would change the scale.
  virtual bool CanStepOut() const = 0;
  /// mode: one of viewing/fit.h.
  virtual void Fit(int mode) = 0;
  /// Whether a fit goes on as the window changes.
  virtual bool IsFitting(int mode) const = 0;

  // Mouse

  /// Arms the zoom selection, or takes that back.
  virtual void ToggleSelection() = 0;
  /// Whether the zoom selection is armed.
  virtual bool IsSelecting() const = 0;
  /// What a click on the page does from now on.
  virtual void SetClick(Click what) = 0;
  /// Whether a click does that.
  virtual bool IsClick(Click what) const = 0;

 protected:
  ~ViewerDisplay() = default;
};
