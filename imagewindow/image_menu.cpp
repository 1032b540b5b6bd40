#include "imagewindow/image_window.h"
#include "library/resource_ids.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/menu.h"
#include "platform/resources/resources.h"

void CImageWindow::OnContextMenu(CWnd*, CPoint point) {
  CMenu menu;
  const HINSTANCE module = AfxFindResourceHandle(MAKEINTRESOURCE(IDR_ZP_CONTEXT), RT_MENU);
  if (menu.Attach(LoadMenuA(module, MAKEINTRESOURCE(IDR_ZP_CONTEXT))) == FALSE) return;
  CMenu* popup = menu.GetSubMenu(0);
  // The items are commands of the frame; the window itself has none.
  if (popup != nullptr) popup->TrackPopupMenu(TPM_RIGHTBUTTON, point.x, point.y, GetParentFrame(), nullptr);
}
