#pragma once

#include <vector>

#include "platform/framework/control_bar.h"

/// Styles of a pane.
enum : UINT {
  SBPS_NORMAL = 0,
  SBPS_NOBORDERS = 0x0100,
  SBPS_POPOUT = 0x0200,
  SBPS_DISABLED = 0x04000000,  ///< shows no text
  SBPS_STRETCH = 0x08000000,   ///< takes the width that the others leave; one pane only
};

/// A row of panes with texts. Panes count from 0; the bar's own window text is that of pane 0.
class PLATFORM_API CStatusBar : public CControlBar {
  DECLARE_DYNAMIC(CStatusBar)
 public:
  CStatusBar() = default;

  using CWnd::Create;
  BOOL Create(CWnd* parent, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_BOTTOM, UINT id = AFX_IDW_STATUS_BAR);
  /// Makes the panes, each as wide as the string with its id; 0 is the stretching message pane if it comes
  /// first. Null ids: count panes without numbers.
  BOOL SetIndicators(const UINT* ids, int count);

  /// How many panes there are.
  int GetCount() const { return static_cast<int>(m_panes.size()); }
  /// -1 if there is no such pane.
  int CommandToIndex(UINT id) const;
  UINT GetItemID(int index) const;
  void GetItemRect(int index, LPRECT rect) const;
  UINT GetPaneStyle(int index) const;
  void SetPaneStyle(int index, UINT style);
  /// width: of the text, without the pane's margins.
  void SetPaneInfo(int index, UINT id, UINT style, int width);
  CString GetPaneText(int index) const;
  void GetPaneText(int index, CString& text) const { text = GetPaneText(index); }
  /// update: the pane is drawn anew. FALSE if there is no such pane.
  BOOL SetPaneText(int index, LPCTSTR text, BOOL update = TRUE);

  CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;
  void OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler) override;

 protected:
  void OnPaint();
  BOOL OnEraseBkgnd(CDC*) { return TRUE; }
  void OnSize(UINT type, int cx, int cy);
  void OnLButtonDown(UINT flags, CPoint point);
  BOOL OnSetCursor(CWnd* window, UINT hit, UINT message);
  LRESULT OnSetText(WPARAM wParam, LPARAM text);
  LRESULT OnGetText(WPARAM room, LPARAM buffer);
  LRESULT OnGetTextLength(WPARAM wParam, LPARAM lParam);

 private:
  struct Pane {
    UINT id = 0;
    UINT style = SBPS_NORMAL;
    int width = 0;
    CString text;
  };
  const Pane* PaneAt(int index) const;
  std::vector<RECT> Places() const;
  CRect GripPlace() const;  ///< empty where the frame can't be sized
  void DrawPane(CDC& dc, const Pane& pane, CRect place) const;
  void InvalidatePane(int index);

  std::vector<Pane> m_panes;

  DECLARE_MESSAGE_MAP()
};
