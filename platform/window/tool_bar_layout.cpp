#include "platform/window/detail/tool_bar_record.h"

namespace platform {
namespace {

constexpr int kSeparatorExtent = 8;

}  // namespace

std::vector<RECT> PlaceToolButtons(std::span<const TBBUTTON> buttons, SIZE size, const RECT& margins,
                                   bool vertical) {
  std::vector<RECT> places;
  places.reserve(buttons.size());
  int at = vertical ? margins.top : margins.left;
  for (const TBBUTTON& button : buttons) {
    int extent = vertical ? size.cy : size.cx;
    if ((button.fsStyle & TBSTYLE_SEP) != 0) {
      extent = button.iBitmap > 0 ? button.iBitmap : kSeparatorExtent;
      if (vertical) extent = button.idCommand != 0 ? 0 : kSeparatorExtent;
    }
    if ((button.fsState & TBSTATE_HIDDEN) != 0) extent = 0;
    places.push_back(vertical ? RECT{margins.left, at, margins.left + size.cx, at + extent}
                              : RECT{at, margins.top, at + extent, margins.top + size.cy});
    at += extent;
  }
  return places;
}

std::vector<RECT> ToolbarRecord::Places() const {
  return PlaceToolButtons(buttons, buttonSize, margins, vertical);
}

SIZE ToolbarRecord::Extent() const {
  const std::vector<RECT> places = Places();
  const RECT last = places.empty() ? RECT{margins.left, margins.top, margins.left + buttonSize.cx,
                                          margins.top + buttonSize.cy}
                                   : places.back();
  return {last.right + margins.right, last.bottom + margins.bottom};
}

int ToolbarButtonAt(const ToolbarRecord& toolbar, POINT point) {
  const std::vector<RECT> places = toolbar.Places();
  const auto count = static_cast<int>(places.size());
  if (toolbar.IsChevron(count) && PtInRect(&toolbar.chevron, point)) return count;
  for (int i = 0; i < count && !toolbar.IsBehindChevron(i); ++i) {
    const auto at = static_cast<std::size_t>(i);
    if ((toolbar.buttons[at].fsStyle & TBSTYLE_SEP) == 0 && PtInRect(&places[at], point)) return i;
  }
  return -1;
}

}  // namespace platform
