#include "viewing/scroll_bars.h"

#include <cstdint>

#include "platform/framework/wnd.h"

namespace scroll_bars {

void Add(CWnd& window) {
  window.ModifyStyle(0, WS_HSCROLL | WS_VSCROLL);
  window.ShowScrollBar(SB_BOTH, FALSE);
  SCROLLINFO nothing{};
  nothing.cbSize = sizeof nothing;
  nothing.fMask = SIF_ALL;
  window.SetScrollInfo(SB_HORZ, &nothing, FALSE);
  window.SetScrollInfo(SB_VERT, &nothing, FALSE);
}

SCROLLINFO Of(int scaled, int client) {
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

bool Follow(CWnd& window, Event* event, const viewport::Axis& axis, LONG* position) {
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

}  // namespace scroll_bars
