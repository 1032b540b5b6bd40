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
  CMenu* m_pMenu = nullptr;  ///< of a menu: the item is the one at m_nIndex in it
  CMenu* m_pSubMenu =
      nullptr;  ///< the item is this sub-menu of m_pMenu, asked about under its first item's number

  // They set the menu's item if there is one, but not a sub-menu.
  virtual void Enable(BOOL on = TRUE);
  virtual void SetCheck(int check = 1);
  /// The mark is a dot.
  virtual void SetRadio(BOOL on = TRUE);
  virtual void SetText(LPCTSTR text);

  /// Asks the target. If nobody has a handler and disableIfNoHandler is set, the item is disabled unless a
  /// command handler exists.
  BOOL DoUpdate(CCmdTarget* target, BOOL disableIfNoHandler);

  bool m_bEnableChanged = false;
  BOOL m_bEnabled = TRUE;
  int m_nCheck = 0;
};
