#pragma once

#include "tessarel12.h"

/// The window of the pages, with what the application adds: a part that can be selected, keys that turn the
/// page, a fit that stays, several files dropped at once.
class CViewerPage : public CImageWindow {
  DECLARE_DYNCREATE(CViewerPage)
 public:
  CViewerPage() = default;
  ~CViewerPage() override = default;

  bool LoadPage(int page) override;
  /// FitModeNone or the fit of each page that comes and of each size of the window.
  void KeepFit(int mode);
  void TurnAtEnd(bool turn) { m_turnsAtEnd = turn; }
  bool TurnsAtEnd() const { return m_turnsAtEnd; }
  /// Moves the page's pixel of the scaled page to the top left corner, as far as there is a page.
  void GoTo(CPoint position) { SetScrollPos(position, TRUE); }

  /// In pixels of m_Bitmap; empty: nothing is selected.
  CRect SelectedPart() const;
  /// The next drag of the mouse selects.
  void ArmSelection();
  /// True if there was something to take back.
  bool ClearSelection();

 protected:
  void OnKeyDown(UINT key, UINT repeat, UINT flags);
  void OnLButtonDown(UINT flags, CPoint point);
  void OnMouseMove(UINT flags, CPoint point);
  void OnLButtonUp(UINT flags, CPoint point);
  void OnCaptureChanged(CWnd* window);
  BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
  void OnPaint();
  void OnSize(UINT type, int cx, int cy);
  void OnDropFiles(HDROP drop);

 private:
  bool HasPicture() const { return (m_Bitmap.Flags & leadtools12::kAllocated) != 0; }
  bool TurnsPage(UINT key) const;
  void FitAgain();
  CPoint PixelAt(CPoint point) const;
  void SelectTo(CPoint point);
  void DrawSelection();

  bool m_turnsAtEnd = true;
  bool m_fitting = false;
  CSize m_size;  ///< with the scroll bars

  bool m_armed = false;
  bool m_selecting = false;  ///< the button is down
  CPoint m_selectionStart;   ///< pixel of the page
  CRect m_selection;
  int m_selectedTurn = 0;  ///< of the page that the selection was made on

  DECLARE_MESSAGE_MAP()
};
