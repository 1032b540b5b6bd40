#pragma once

#include "platform/framework/control_bar.h"
#include "platform/window/tool_bar_control.h"

/// Styles of a button with its state, as SetButtonStyle takes them.
enum : UINT {
  TBBS_BUTTON = 0,
  TBBS_SEPARATOR = 1,
  TBBS_CHECKBOX = 2,
  TBBS_GROUP = 4,
  TBBS_CHECKGROUP = TBBS_GROUP | TBBS_CHECKBOX,
  TBBS_CHECKED = TBSTATE_CHECKED << 16,
  TBBS_PRESSED = TBSTATE_PRESSED << 16,
  TBBS_DISABLED = TBSTATE_ENABLED << 16,
  TBBS_HIDDEN = TBSTATE_HIDDEN << 16,
  TBBS_INDETERMINATE = TBSTATE_INDETERMINATE << 16,
};

/// The control itself, for programs that send it the TB_ messages by name.
class PLATFORM_API CToolBarCtrl : public CWnd {
 public:
  CToolBarCtrl() = default;
  CToolBarCtrl(const CToolBarCtrl&) = delete;
  CToolBarCtrl& operator=(const CToolBarCtrl&) = delete;
  ~CToolBarCtrl() override {
    if (FromHandlePermanent(m_hWnd) != this) m_hWnd = nullptr;  // borrowed
  }

  int GetButtonCount() const { return static_cast<int>(::SendMessage(m_hWnd, TB_BUTTONCOUNT)); }
  int GetState(int id) const { return static_cast<int>(::SendMessage(m_hWnd, TB_GETSTATE, Id(id))); }
  BOOL SetState(int id, UINT state) { return Send(TB_SETSTATE, id, state); }
  BOOL EnableButton(int id, BOOL on = TRUE) { return Send(TB_ENABLEBUTTON, id, MAKELPARAM(on, 0)); }
  BOOL CheckButton(int id, BOOL on = TRUE) { return Send(TB_CHECKBUTTON, id, MAKELPARAM(on, 0)); }
  BOOL HideButton(int id, BOOL hide = TRUE) { return Send(TB_HIDEBUTTON, id, MAKELPARAM(hide, 0)); }
  BOOL IsButtonEnabled(int id) const { return ::SendMessage(m_hWnd, TB_ISBUTTONENABLED, Id(id)) != 0; }
  BOOL IsButtonChecked(int id) const { return ::SendMessage(m_hWnd, TB_ISBUTTONCHECKED, Id(id)) != 0; }
  BOOL GetItemRect(int index, LPRECT rect) const {
    return ::SendMessage(m_hWnd, TB_GETITEMRECT, Id(index), reinterpret_cast<LPARAM>(rect)) != 0;
  }
  BOOL DeleteButton(int index) { return Send(TB_DELETEBUTTON, index, 0); }
  BOOL InsertButton(int index, const TBBUTTON* button) {
    return Send(TB_INSERTBUTTON, index, reinterpret_cast<LPARAM>(button));
  }

 private:
  static WPARAM Id(int id) { return static_cast<WPARAM>(id); }
  BOOL Send(UINT message, int id, LPARAM lParam) { return SendMessage(message, Id(id), lParam) != 0; }
};

/// A bar of flat buttons with pictures. Buttons count from 0, separators included.
class PLATFORM_API CToolBar : public CControlBar {
  DECLARE_DYNAMIC(CToolBar)
 public:
  CToolBar() = default;

  using CWnd::Create;
  BOOL Create(CWnd* parent, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_TOP, UINT id = AFX_IDW_TOOLBAR);
  /// controlStyle: TBSTYLE_...; style: WS_... and CBRS_...; borders: extra room at each side.
  BOOL CreateEx(CWnd* parent, DWORD controlStyle = TBSTYLE_FLAT,
                DWORD style = WS_CHILD | WS_VISIBLE | CBRS_ALIGN_TOP, CRect borders = CRect(0, 0, 0, 0),
                UINT id = AFX_IDW_TOOLBAR);

  void SetSizes(SIZE button, SIZE image);
  /// Takes the place of all buttons; 0 is a separator. With null, count empty buttons.
  BOOL SetButtons(const UINT* ids, int count);

  int CommandToIndex(UINT id) const;
  UINT GetItemID(int index) const;
  /// In client coordinates; empty for a hidden button.
  virtual void GetItemRect(int index, LPRECT rect) const;
  UINT GetButtonStyle(int index) const;
  void SetButtonStyle(int index, UINT style);
  void GetButtonInfo(int index, UINT& id, UINT& style, int& imageOrWidth) const;
  /// Of a separator imageOrWidth is the width of its gap.
  void SetButtonInfo(int index, UINT id, UINT style, int imageOrWidth);
  int GetCount() const;
  CToolBarCtrl& GetToolBarCtrl() const;
  /// From now on what doesn't fit whole into the bar is hidden, and found behind a chevron at the bar's end:
  /// a menu with the buttons' tips as texts and the combos that stand in gaps with their entries. Without it,
  /// which is how a bar begins, the bar is cut off.
  void EnableChevron(BOOL on = TRUE);

  CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;
  void OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler) override;
  UINT OnItemHitTest(CPoint point, LPRECT area) const override;

 protected:
  /// Applies what changed since the last time: margins, direction, and the child windows that stand in gaps,
  /// which hide while the bar stands upright.
  virtual void Layout();
  void OnBarStyleChange(DWORD former, DWORD style) override;

  BOOL m_bDelayedButtonLayout = FALSE;
  SIZE m_sizeImage = {16, 15};
  SIZE m_sizeButton = {23, 22};

 private:
  bool GetButton(int index, TBBUTTON& button) const;
  void ReplaceButton(int index, const TBBUTTON& button);
  void LayoutIfDelayed() const;
  void ShowChildren(bool show);
  void MoveChildren(int dx, int dy);

  mutable CToolBarCtrl m_control;  ///< this bar's window under the control's interface
  POINT m_childCorner = {0, 0};    ///< corner of the buttons to which the child windows were placed

  DECLARE_MESSAGE_MAP()
};
