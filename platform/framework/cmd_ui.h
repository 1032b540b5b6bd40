#pragma once

#include "platform/framework/cmd_target.h"

class CMenu;
class CWnd;

/// The state of one user-interface item, asked for by its number. A menu, a bar or a dialog derives from this
/// to apply the answers to its own kind of item.
class PLATFORM_API CCmdUI {
 public:
  CCmdUI() = default;
  CCmdUI(const CCmdUI&) = delete;
  CCmdUI& operator=(const CCmdUI&) = delete;
  virtual ~CCmdUI() = default;

  UINT m_nID = 0;
  UINT m_nIndex = 0;
  UINT m_nIndexMax = 0;
  CWnd* m_pOther = nullptr;  ///< the window whose item it is
  CMenu* m_pMenu = nullptr;

  virtual void Enable(BOOL on = TRUE) {
    m_bEnableChanged = true;
    m_bEnabled = on;
  }
  virtual void SetCheck(int check = 1) { m_nCheck = check; }
  virtual void SetRadio(BOOL on = TRUE) { SetCheck(on != 0 ? 1 : 0); }
  virtual void SetText(LPCTSTR) {}

  /// Asks the target. If nobody has a handler and disableIfNoHandler is set, the item is disabled unless a
  /// command handler exists.
  BOOL DoUpdate(CCmdTarget* target, BOOL disableIfNoHandler);

  bool m_bEnableChanged = false;
  BOOL m_bEnabled = TRUE;
  int m_nCheck = 0;
};
