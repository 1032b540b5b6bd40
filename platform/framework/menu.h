#pragma once

#include "platform/base/geometry.h"
#include "platform/base/object.h"
#include "platform/base/string.h"
#include "platform/window/menu_handles.h"

class CWnd;

/// A menu as an object, which destroys it at its end. One that is given to a window or to another menu, which
/// destroy it themselves, has to be detached.
class PLATFORM_API CMenu : public CObject {
  DECLARE_DYNCREATE(CMenu)
 public:
  HMENU m_hMenu = nullptr;

  CMenu() = default;
  CMenu(const CMenu&) = delete;
  CMenu& operator=(const CMenu&) = delete;
  ~CMenu() override { DestroyMenu(); }

  HMENU GetSafeHmenu() const { return m_hMenu; }
  operator HMENU() const { return m_hMenu; }  // NOLINT: passed wherever the handle is wanted
  /// The object that holds the menu, or a temporary one that ends at idle time; null for a dead handle.
  static CMenu* FromHandle(HMENU menu);
  static void DeleteTempMap();
  /// Takes the menu over. FALSE for a null handle.
  BOOL Attach(HMENU menu);
  /// Gives the menu to the caller.
  HMENU Detach();

  BOOL CreateMenu() { return Attach(::CreateMenu()); }
  BOOL CreatePopupMenu() { return Attach(::CreatePopupMenu()); }
  /// From whichever linked module has it.
  BOOL LoadMenu(LPCTSTR name);
  BOOL LoadMenu(UINT id) { return LoadMenu(MAKEINTRESOURCE(id)); }
  BOOL DestroyMenu() { return m_hMenu == nullptr ? FALSE : ::DestroyMenu(Detach()); }

  BOOL AppendMenu(UINT flags, std::uintptr_t idOrMenu = 0, LPCTSTR text = nullptr) {
    return ::AppendMenuA(m_hMenu, flags, idOrMenu, text);
  }
  BOOL InsertMenu(UINT item, UINT flags, std::uintptr_t idOrMenu = 0, LPCTSTR text = nullptr) {
    return ::InsertMenuA(m_hMenu, item, flags, idOrMenu, text);
  }
  BOOL ModifyMenu(UINT item, UINT flags, std::uintptr_t idOrMenu = 0, LPCTSTR text = nullptr) {
    return ::ModifyMenuA(m_hMenu, item, flags, idOrMenu, text);
  }
  BOOL DeleteMenu(UINT item, UINT flags) { return ::DeleteMenu(m_hMenu, item, flags); }
  BOOL RemoveMenu(UINT item, UINT flags) { return ::RemoveMenu(m_hMenu, item, flags); }
  UINT EnableMenuItem(UINT item, UINT enable) {
    return static_cast<UINT>(::EnableMenuItem(m_hMenu, item, enable));
  }
  UINT CheckMenuItem(UINT item, UINT check) { return ::CheckMenuItem(m_hMenu, item, check); }
  BOOL CheckMenuRadioItem(UINT first, UINT last, UINT checked, UINT flags) {
    return ::CheckMenuRadioItem(m_hMenu, first, last, checked, flags);
  }

  CMenu* GetSubMenu(int position) const { return FromHandle(::GetSubMenu(m_hMenu, position)); }
  int GetMenuItemCount() const { return ::GetMenuItemCount(m_hMenu); }
  UINT GetMenuItemID(int position) const { return ::GetMenuItemID(m_hMenu, position); }
  UINT GetMenuState(UINT item, UINT flags) const { return ::GetMenuState(m_hMenu, item, flags); }
  int GetMenuString(UINT item, LPTSTR buffer, int bufferSize, UINT flags) const {
    return ::GetMenuStringA(m_hMenu, item, buffer, bufferSize, flags);
  }
  int GetMenuString(UINT item, CString& text, UINT flags) const;

  /// Shows the pop-up at a point of the screen; see ::TrackPopupMenu.
  BOOL TrackPopupMenu(UINT flags, int x, int y, const CWnd* owner, LPCRECT rect = nullptr);
};
