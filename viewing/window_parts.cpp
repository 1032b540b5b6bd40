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

// Scroll bars

void AddScrollBars(CWnd& window) {
  window.ModifyStyle(0, WS_HSCROLL | WS_VSCROLL);
  window.ShowScrollBar(SB_BOTH, FALSE);
  SCROLLINFO nothing{};
  nothing.cbSize = sizeof nothing;
  nothing.fMask = SIF_ALL;
  window.SetScrollInfo(SB_HORZ, &nothing, FALSE);
  window.SetScrollInfo(SB_VERT, &nothing, FALSE);
}

SCROLLINFO BarOf(int scaled, int client) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE;
  // To the scaled size, not one less, so that a bar stays up while the page just fills the window; the fits
  // count on that.
  info.nMax = scaled;
  info.nPage = static_cast<UINT>(client);
  return info;
}

void SetClientSize(CWnd& window, SIZE client) {
  SCROLLINFO page{};
  page.cbSize = sizeof page;
  page.fMask = SIF_PAGE;
  page.nPage = static_cast<UINT>(client.cx);
  window.SetScrollInfo(SB_HORZ, &page, FALSE);
  page.nPage = static_cast<UINT>(client.cy);
  window.SetScrollInfo(SB_VERT, &page, FALSE);
}

void ShowPosition(CWnd& window, POINT position) {
  window.SetScrollPos(SB_HORZ, position.x, TRUE);
  window.SetScrollPos(SB_VERT, position.y, TRUE);
}

bool Scroll(CWnd& window, ScrollEvent* event, const viewport::Axis& axis, LONG* position) {
  const int code = static_cast<int>(event->code);
  int thumb = 0;
  if (viewport::IsThumb(code)) {
    // The bar knows the thumb's place in full.
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    window.GetScrollInfo(event->bar, &info, SIF_ALL);
    thumb = info.nTrackPos;
    event->position = static_cast<UINT>(thumb);
    *position = viewport::Limit(thumb, axis.largest);
  } else {
    const int step = viewport::StepOf(code, axis);
    if (step == 0) return false;
    *position = viewport::Limit(std::int64_t{axis.position} + step, axis.largest);
    thumb = *position;
  }
  window.SetScrollPos(event->bar, thumb, TRUE);
  window.InvalidateRect(nullptr, FALSE);
  return true;
}

// Without a page; context menu

void FillGray(CWnd& window, CDC& dc) {
  CRect client;
  window.GetClientRect(client);
  dc.DPtoLP(static_cast<LPRECT>(client));
  CGdiObject* former = dc.SelectStockObject(GRAY_BRUSH);
  dc.PatBlt(0, 0, client.right, client.bottom, PATCOPY);
  dc.SelectObject(former);
}

void ShowContextMenu(POINT point, CWnd* frame) {
  CMenu menu;
  const HINSTANCE module = AfxFindResourceHandle(MAKEINTRESOURCE(IDR_ZP_CONTEXT), RT_MENU);
  if (menu.Attach(LoadMenuA(module, MAKEINTRESOURCE(IDR_ZP_CONTEXT))) == FALSE) return;
  CMenu* popup = menu.GetSubMenu(0);
  if (popup != nullptr) popup->TrackPopupMenu(TPM_RIGHTBUTTON, point.x, point.y, frame, nullptr);
}

}  // namespace window_parts
