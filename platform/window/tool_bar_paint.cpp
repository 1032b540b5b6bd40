#include <QPainter>
#include <algorithm>

#include "platform/graphics/detail/list_picture.h"
#include "platform/window/bar_styles.h"
#include "platform/window/detail/theme.h"
#include "platform/window/detail/tool_bar_record.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/window.h"

namespace platform {
namespace {

constexpr double kFaded = 0.4;  // of a disabled picture, where there is no list of disabled ones

/// True for a gap in which a child window stands: it shows no line.
bool HoldsChild(const WindowRecord& bar, const RECT& place) {
  const QRect gap(place.left, place.top, place.right - place.left, place.bottom - place.top);
  return std::any_of(bar.children.begin(), bar.children.end(), [&](HWND handle) {
    const WindowRecord* child = FindWindowRecord(handle);
    return (child->style & WS_VISIBLE) != 0 && child->frame && child->frame->geometry().intersects(gap);
  });
}

void DrawPicture(HDC dc, const ToolbarRecord& toolbar, const TBBUTTON& button, const RECT& place,
                 bool sunken) {
  const bool enabled = (button.fsState & TBSTATE_ENABLED) != 0;
  const POINT at = {place.left + (place.right - place.left - toolbar.imageSize.cx) / 2 + (sunken ? 1 : 0),
                    place.top + (place.bottom - place.top - toolbar.imageSize.cy) / 2 + (sunken ? 1 : 0)};
  if (enabled || toolbar.disabledImages != nullptr) {
    const HIMAGELIST list = enabled ? toolbar.images : toolbar.disabledImages;
    ImageList_Draw(list, button.iBitmap, dc, at.x, at.y, ILD_TRANSPARENT);
    return;
  }
  const QImage picture = PictureOf(toolbar.images, button.iBitmap);
  if (picture.isNull()) return;
  PaintTheme(dc, {at.x, at.y, at.x + toolbar.imageSize.cx, at.y + toolbar.imageSize.cy},
             [&](QPainter& painter, const QRect& rect) {
               painter.setOpacity(kFaded);
               painter.drawImage(rect, picture);
             });
}

void DrawButton(HDC dc, const ToolbarRecord& toolbar, int index, const RECT& place, bool focused) {
  const TBBUTTON& button = toolbar.buttons[static_cast<std::size_t>(index)];
  const bool held = toolbar.pressed == index;
  ToolButtonLook look;
  look.enabled = (button.fsState & TBSTATE_ENABLED) != 0;
  look.hot = toolbar.hot == index && (toolbar.pressed < 0 || held);
  look.pressed = (held && toolbar.hot == index) || (button.fsState & TBSTATE_PRESSED) != 0;
  look.checked = (button.fsState & (TBSTATE_CHECKED | TBSTATE_INDETERMINATE)) != 0;
  DrawToolButtonFace(dc, place, look);
  DrawPicture(dc, toolbar, button, place, look.pressed);
  if (focused) DrawFocusFrame(dc, place);
}

void DrawBorders(HDC dc, const RECT& client, DWORD borders) {
  const HBRUSH line = GetSysColorBrush(COLOR_3DSHADOW);
  const struct {
    DWORD side;
    RECT place;
  } sides[] = {{CBRS_BORDER_LEFT, {0, 0, 1, client.bottom}},
               {CBRS_BORDER_TOP, {0, 0, client.right, 1}},
               {CBRS_BORDER_RIGHT, {client.right - 1, 0, client.right, client.bottom}},
               {CBRS_BORDER_BOTTOM, {0, client.bottom - 1, client.right, client.bottom}}};
  for (const auto& [side, place] : sides)
    if ((borders & side) != 0) FillRect(dc, &place, line);
}

RECT GripperPlace(const ToolbarRecord& toolbar, const RECT& client) {
  return toolbar.vertical ? RECT{0, 1, client.right, toolbar.margins.top - 1}
                          : RECT{1, 0, toolbar.margins.left - 1, client.bottom};
}

}  // namespace

void PaintToolbar(HWND window, HDC dc, const ToolbarRecord& toolbar) {
  RECT client;
  GetClientRect(window, &client);
  FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
  if (toolbar.gripper) DrawGripper(dc, GripperPlace(toolbar, client), toolbar.vertical);
  const int focused = GetFocus() == window ? toolbar.current : -1;
  const std::vector<RECT> places = toolbar.Places();
  for (std::size_t i = 0; i < places.size() && !toolbar.IsBehindChevron(static_cast<int>(i)); ++i) {
    const TBBUTTON& button = toolbar.buttons[i];
    if ((button.fsState & TBSTATE_HIDDEN) != 0 || !RectVisible(dc, &places[i])) continue;
    if ((button.fsStyle & TBSTYLE_SEP) == 0)
      DrawButton(dc, toolbar, static_cast<int>(i), places[i], static_cast<int>(i) == focused);
    else if (!HoldsChild(*FindWindowRecord(window), places[i]))
      DrawSeparatorLine(dc, places[i], !toolbar.vertical);
  }
  if (toolbar.behind >= 0) DrawChevron(dc, toolbar, toolbar.IsChevron(focused));
  DrawBorders(dc, client, toolbar.borders);
}

}  // namespace platform
