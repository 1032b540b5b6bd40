#include "viewing/window_parts.h"

#include <cstdint>

#include "library/resource_ids.h"
#include "platform/framework/menu.h"
#include "platform/framework/wnd.h"
#include "platform/resources/resource_tables.h"

namespace window_parts {

LPCTSTR WindowClass() {
  constexpr std::intptr_t kBackground = 5;  // the class names its brush by a colour number plus 1
  return AfxRegisterWndClass(CS_BYTEALIGNCLIENT, nullptr, reinterpret_cast<HBRUSH>(kBackground), nullptr);
}

void ShowContextMenu(POINT point, CWnd* frame) {
  CMenu menu;
  const HINSTANCE module = AfxFindResourceHandle(MAKEINTRESOURCE(IDR_ZP_CONTEXT), RT_MENU);
  if (menu.Attach(LoadMenuA(module, MAKEINTRESOURCE(IDR_ZP_CONTEXT))) == FALSE) return;
  CMenu* popup = menu.GetSubMenu(0);
  if (popup != nullptr) popup->TrackPopupMenu(TPM_RIGHTBUTTON, point.x, point.y, frame, nullptr);
}

}  // namespace window_parts
