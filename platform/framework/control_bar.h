#pragma once

#include "platform/framework/cmd_ui.h"
#include "platform/framework/wnd.h"
#include "platform/window/bar_styles.h"

/// What a frame hands to its bars with WM_SIZEPARENT: each takes its strip off the rectangle.
struct AFX_SIZEPARENTPARAMS {
  RECT rect;       ///< what is left, in the frame's client coordinates
  SIZE sizeTotal;  ///< what the bars took
  BOOL bStretch;
};

/// A bar at an edge of a frame. The program owns the object.
class PLATFORM_API CControlBar : public CWnd {
  DECLARE_DYNAMIC(CControlBar)
 public:
  CControlBar() = default;
  ~CControlBar() override;

  DWORD m_dwStyle = 0;      ///< CBRS_...
  DWORD m_dwDockStyle = 0;  ///< the CBRS_ALIGN_... edges that the user may move the bar to
  BOOL m_bAutoDelete = FALSE;

  DWORD GetBarStyle() const { return m_dwStyle; }
  void SetBarStyle(DWORD style);
  /// Allows the user to move the bar to these CBRS_ALIGN_... edges, if its frame allows them too.
  void EnableDocking(DWORD dockStyle);
  BOOL IsVisible() const { return (GetStyle() & WS_VISIBLE) != 0; }
  BOOL IsFloating() const { return FALSE; }
  void SetBorders(int left = 0, int top = 0, int right = 0, int bottom = 0);
  /// The frame that the bar belongs to.
  CFrameWnd* GetDockingFrame() const { return GetParentFrame(); }

  /// The size wanted; stretch: along the whole edge.
  virtual CSize CalcFixedLayout(BOOL stretch, BOOL horizontal);
  /// The same by LM_... flags; length is not used.
  virtual CSize CalcDynamicLayout(int length, DWORD mode);
  /// Brings the items up to date at idle time. disableIfNoHandler: an item without a handler is disabled.
  virtual void OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler) = 0;
  /// The number of the item at a point of the client area, whose strings are its tips; 0 for none.
  virtual UINT OnItemHitTest(CPoint point, LPRECT area) const;
  BOOL PreTranslateMessage(MSG* message) override;

 protected:
  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
  void PostNcDestroy() override;
  /// Tells the bar that its style has changed.
  virtual void OnBarStyleChange(DWORD, DWORD) {}
  /// The room for borders and gripper at each side.
  CRect InsideMargins(BOOL horizontal) const;

  int OnCreate(LPCREATESTRUCT cs);
  void OnDestroy();
  void OnMouseMove(UINT flags, CPoint point);
  void OnLButtonDown(UINT flags, CPoint point);
  void OnLButtonUp(UINT flags, CPoint point);
  void OnCaptureChanged(CWnd* to);
  LRESULT OnSizeParent(WPARAM wParam, LPARAM lParam);
  LRESULT OnIdleUpdate(WPARAM disableIfNoHandler, LPARAM lParam);
  LRESULT OnMouseLeave(WPARAM wParam, LPARAM lParam);

  CRect m_rcBorders{0, 0, 0, 0};

 private:
  void ShowFlyBy(UINT item);
  void DragTo(CPoint point);

  bool m_dragging = false;
  UINT m_flyBy = 0;  ///< the item whose prompt the status bar shows

  DECLARE_MESSAGE_MAP()
};
