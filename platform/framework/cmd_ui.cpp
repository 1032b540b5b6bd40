#include "platform/framework/cmd_ui.h"

#include "platform/framework/menu.h"

// Of a menu the item at m_nIndex is set. A sub-menu's own look is left to the handler, which then acts on
// m_pMenu itself: the answers are about the item whose number was asked for.

void CCmdUI::Enable(BOOL on) {
  m_bEnableChanged = true;
  m_bEnabled = on;
  if (m_pMenu != nullptr && m_pSubMenu == nullptr)
    m_pMenu->EnableMenuItem(m_nIndex, MF_BYPOSITION | (on != 0 ? MF_ENABLED : MF_GRAYED));
}

void CCmdUI::SetCheck(int check) {
  m_nCheck = check;
  if (m_pMenu != nullptr && m_pSubMenu == nullptr)
    m_pMenu->CheckMenuItem(m_nIndex, MF_BYPOSITION | (check != 0 ? MF_CHECKED : MF_UNCHECKED));
}

void CCmdUI::SetRadio(BOOL on) {
  SetCheck(on != 0 ? 1 : 0);
  if (m_pMenu != nullptr && m_pSubMenu == nullptr && on != 0)
    m_pMenu->CheckMenuRadioItem(m_nIndex, m_nIndex, m_nIndex, MF_BYPOSITION);
}

void CCmdUI::SetText(LPCTSTR text) {
  if (m_pMenu == nullptr || m_pSubMenu != nullptr) return;
  const UINT state = m_pMenu->GetMenuState(m_nIndex, MF_BYPOSITION);
  m_pMenu->ModifyMenu(m_nIndex, state | MF_BYPOSITION, m_nID, text);
}

BOOL CCmdUI::DoUpdate(CCmdTarget* target, BOOL disableIfNoHandler) {
  if (target == nullptr) return FALSE;
  m_bEnableChanged = false;
  const BOOL handled = target->OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this, nullptr);
  bool found = false;
  if (disableIfNoHandler != 0 && !m_bEnableChanged) Enable(target->OnCmdMsg(m_nID, CN_COMMAND, this, &found));
  return handled;
}
